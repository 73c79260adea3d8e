"""The host of host.c in Python: opens a recording, makes its digest, cuts it into sentences. The binding, tavimo.py, is
made from the engine's table of exports and is installed with the library.

    mkdir -p temp tmpwav zud
    PYTHONPATH=PREFIX/share/tavimo/python python3 host.py PREFIX/lib/libtavimo.so RECORDING
"""
import ctypes
import sys

import tavimo


def main(library, recording):
    engine = tavimo.load(library)
    path = tavimo.path(recording)
    if not engine.vcIsWaveFile(path):
        sys.exit(f"{recording} is no PCM wave file of 8 or 16 bits")

    digest = tavimo.path("temp/host.tmp")
    if engine.vcSimpleMakeDigestFile(path, path, digest, None) != 1:
        sys.exit("no digest could be made in temp; are the folders temp, tmpwav and zud here?")
    print(engine.vcOpenDigestFile(digest) // 25, "seconds")

    count = engine.vcOpenSentenceFile(path)  # -1 when no study file is there yet
    starts = (ctypes.c_uint32 * max(count, 0))()
    if count > 0:
        engine.vcReadSentenceData(starts, count)
    else:
        engine.vcSetSilentParam(4, 600)  # levels up to 4 are silent; 600 ms of them end a sentence
        count = engine.vcMakeSentence()
        starts = (ctypes.c_uint32 * max(count, 0))()
        if engine.vcReadTmpIdx(starts, count) == 0:
            engine.vcWriteExtraFileData(path, starts, count)
    for number, start in enumerate(starts, 1):
        print("sentence", number, "at", start, "ms")
    engine.vcCloseDigestFile()


if __name__ == "__main__":
    if len(sys.argv) != 3:
        sys.exit("usage: host.py LIBRARY RECORDING")
    main(*sys.argv[1:])
