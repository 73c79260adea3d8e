/* A host that records: three seconds of the learner into tmpwav\tmpmic.wav, with a level bar, then kept under its name.
 * The device is the first argument ("default", a name of tvListDevices, or "file:PATH"), the recording the second. */
#include <stdio.h>
#include <string.h>
#include <tavimo_host.h>

static int blocks;

/* The main window gets VK_F4 (0x73) in WM_KEYUP (0x101) for every block of 1256 bytes that reached the tape. */
static intptr_t VC_CALL OnMessage(VcWindow window, uint32_t message, uintptr_t wparam, intptr_t lparam) {
  if (message == 0x101 && wparam == 0x73) ++blocks;
  return tvDefaultProc(window, message, wparam, lparam);
}

int main(int argc, char** argv) {
  char kept[200];
  if (argc != 3 || tvEnginePath(argv[2], kept, sizeof kept) < 0 || tvUseWaveInput(argv[1]) != 0) {
    fprintf(stderr, "usage: %s DEVICE RECORDING\n", argv[0]);
    return 2;
  }
  VcWindow main_window = tvCreateWindow(TV_WINDOW, "recorder", OnMessage);
  VcWindow wave_window = tvCreateWindow(TV_WINDOW, NULL, NULL); /* takes the device's messages */
  VcWindow bar = tvCreateWindow(TV_PROGRESS_BAR, NULL, NULL);
  vcSetMainWnd(main_window);
  vcSetWaveInAndOutWndProc(0, wave_window);
  vcSetRecordingVolumeBarHandle(bar);

  /* The tape first, then the device: blocks go into the tape from vcRecordTape on. */
  if (vcNewTapeFile(22050, 16, 1, "tmpwav\\tmpmic.wav") != 0) return 1;
  if (vcWaveInOpenForTape(22050, 16, 1) != 1) {
    fprintf(stderr, "no microphone\n");
    vcCloseWaveFile(3);
    return 1;
  }
  vcRecordTape();
  const double block_ms = vcGetRecordBufLenInTime();
  for (int idle = 0; blocks * block_ms < 3000 && idle < 30;) {
    const int before = blocks;
    tvDispatchMessages(100); /* every block is a message */
    idle = blocks == before ? idle + 1 : 0;
    printf("\rlevel %3d", (int)tvSendMessage(bar, TV_PBM_GETPOS, 0, 0));
  }
  const int recorded_ms = (int)vcStopRecordTape();
  vcWaveInCloseForTape();
  vcCloseWaveFile(3); /* now the tape is a whole wave file */
  printf("\n%d ms\n", recorded_ms);
  if (blocks == 0 || vcSaveTapeFile("tmpwav\\tmpmic.wav", kept) != 0) return 1;
  tvDestroyWindow(bar);
  tvDestroyWindow(wave_window);
  tvDestroyWindow(main_window);
  return 0;
}
