/* A host in forty lines: opens a recording, makes its digest, cuts it into sentences, draws it into wave.png. */
#include <stdio.h>
#include <stdlib.h>
#include <tavimo_host.h>

int main(int argc, char** argv) {
  char path[200];
  if (argc != 2 || tvEnginePath(argv[1], path, sizeof path) < 0 || !vcIsWaveFile(path)) {
    fprintf(stderr, "usage: %s RECORDING (a PCM wave file of 8 or 16 bits)\n", argv[0]);
    return 2;
  }
  /* vcIfDigestFileExist looks for temp\NAME.tmp; this one is ours alone. The engine makes no folders. */
  char digest[] = "temp\\host.tmp";
  if (vcSimpleMakeDigestFile(path, path, digest, NULL) != 1) {
    fprintf(stderr, "no digest could be made in temp; are the folders temp, tmpwav and zud here?\n");
    return 1;
  }
  int32_t levels = vcOpenDigestFile(digest);
  printf("%d seconds\n", (int)(levels / 25));

  int32_t count = vcOpenSentenceFile(path); /* -1 when no study file is there yet */
  uint32_t* starts = count > 0 ? malloc((size_t)count * sizeof *starts) : NULL;
  if (starts != NULL) {
    vcReadSentenceData(starts, count);
  } else {
    vcSetSilentParam(4, 600); /* levels up to 4 are silent; 600 ms of them end a sentence */
    count = vcMakeSentence();
    starts = count > 0 ? malloc((size_t)count * sizeof *starts) : NULL;
    if (starts != NULL && vcReadTmpIdx(starts, count) == 0) vcWriteExtraFileData(path, starts, count);
  }
  for (int32_t i = 0; starts != NULL && i < count; ++i) {
    printf("sentence %d at %u ms\n", (int)(i + 1), (unsigned)starts[i]);
  }
  free(starts);

  VcDc picture = tvCreateDc(600, 100);
  vcDrawHalfDigestWave(picture, 100, 600, 0, levels / 600 + 1);
  int saved = tvSavePng(picture, "wave.png");
  tvDestroyDc(picture);
  vcCloseDigestFile();
  return saved == 0 ? 0 : 1;
}
