/* A Windows host program, small but whole: loads the engine by name, gives it a real window, list box and progress bar,
 * records from the microphone, makes a digest of the tape and draws it, fills a list with bookmarks, and has the engine
 * show a message, which it answers itself. Says on standard output what came of each step; 0 when all went well.
 *
 *   windows_host.exe [PATH OF tavimo.dll]
 *
 * It works in the current folder, as every host does: the engine keeps its files in temp, tmpwav and zud there.
 */
#include <windows.h>

#include <commctrl.h>
#include <stdio.h>

#include "tavimo.h"

/* ---- the engine's functions, looked up by their names ---- */

#define FUNCTIONS(X)               \
  X(vcSetMainWnd)                  \
  X(vcSetWaveInAndOutWndProc)      \
  X(vcSetRecordingVolumeBarHandle) \
  X(vcNewTapeFile)                 \
  X(vcWaveInOpenForTape)           \
  X(vcRecordTape)                  \
  X(vcStopRecordTape)              \
  X(vcWaveInCloseForTape)          \
  X(vcCloseWaveFile)               \
  X(vcMakeDigestFile)              \
  X(vcGetMakeDigestPercentage)     \
  X(vcOpenDigestFile)              \
  X(vcCloseDigestFile)             \
  X(vcDrawSrcDigestWave)           \
  X(vcAddBookMark)                 \
  X(vcFillBookMarkList)            \
  X(vcCanRun)

static struct {
#define DECLARE(name) __typeof__(&name) name;
  FUNCTIONS(DECLARE)
} engine;

static FARPROC find(HMODULE library, const char* name) {
  FARPROC found = GetProcAddress(library, name);
  if (!found) printf("the engine has no %s\n", name);
  return found;
}

static int load(const char* path) {
  HMODULE library = LoadLibraryA(path);
  if (!library) {
    printf("%s cannot be loaded: error %lu\n", path, GetLastError());
    return 0;
  }
  int found = 1;
#define LOOK_UP(name) found = (engine.name = (__typeof__(&name))(void (*)(void))find(library, #name)) != NULL && found;
  FUNCTIONS(LOOK_UP)
  return found;
}

/* ---- the windows ---- */

static int blocksHeard;

static LRESULT CALLBACK mainProcedure(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
  if (message == WM_KEYUP && wparam == VK_F4) ++blocksHeard; /* the engine wrote a block to the tape */
  return DefWindowProcA(window, message, wparam, lparam);
}

static HWND makeMainWindow(void) {
  WNDCLASSA main = {0};
  main.lpfnWndProc = mainProcedure;
  main.hInstance = GetModuleHandleA(NULL);
  main.lpszClassName = "example host";
  RegisterClassA(&main);
  return CreateWindowA("example host", "Example host", WS_OVERLAPPEDWINDOW, 0, 0, 640, 400, NULL, NULL, main.hInstance,
                       NULL);
}

static HWND makeChild(HWND parent, const char* className, int top) {
  return CreateWindowA(className, "", WS_CHILD | WS_VISIBLE, 0, top, 600, 100, parent, NULL, GetModuleHandleA(NULL),
                       NULL);
}

static void dispatchFor(DWORD milliseconds) {
  const DWORD end = GetTickCount() + milliseconds;
  MSG message;
  while ((LONG)(end - GetTickCount()) > 0) {
    MsgWaitForMultipleObjects(0, NULL, FALSE, 20, QS_ALLINPUT);
    while (PeekMessageA(&message, NULL, 0, 0, PM_REMOVE)) DispatchMessageA(&message);
  }
}

/* ---- the steps; each answers whether it went well ---- */

static int report(const char* step, int wentWell, long value) {
  printf("%-10s %s (%ld)\n", step, wentWell ? "ok" : "FAILED", value);
  return wentWell;
}

/* Without a microphone there is nothing to record, and this example has not shown what it is for. */
static int record(void) {
  if (waveInGetNumDevs() == 0) return report("record", 0, 0);
  if (engine.vcWaveInOpenForTape(11025, 16, 1) != 1) return report("record", 0, -1);
  engine.vcRecordTape();
  for (int i = 0; i < 100 && blocksHeard < 20; ++i) dispatchFor(100);
  engine.vcStopRecordTape();
  engine.vcWaveInCloseForTape();
  return report("record", blocksHeard >= 20, blocksHeard);
}

static int makeDigest(void) {
  if (engine.vcMakeDigestFile("tmpwav\\example.wav", "tmpwav\\example.wav", "temp\\example.tmp") == 0) return 0;
  for (int i = 0; i < 100 && engine.vcGetMakeDigestPercentage() < 1000; ++i) dispatchFor(50);
  const int levels = engine.vcOpenDigestFile("temp\\example.tmp");
  return report("digest", levels >= 0, levels);
}

static int draw(HWND window) {
  HDC screen = GetDC(window);
  HDC picture = CreateCompatibleDC(screen);
  HBITMAP bitmap = CreateBitmap(100, 40, 1, 32, NULL);
  HGDIOBJ before = SelectObject(picture, bitmap);
  PatBlt(picture, 0, 0, 100, 40, WHITENESS);
  engine.vcDrawSrcDigestWave(picture, 40, 100, 0, 1, 0);
  int marks = 0;
  for (int y = 0; y < 40; ++y) marks += GetPixel(picture, 50, y) != RGB(255, 255, 255);
  SelectObject(picture, before);
  DeleteObject(bitmap);
  DeleteDC(picture);
  ReleaseDC(window, screen);
  return report("draw", marks > 0, marks);
}

static int fillList(HWND list) {
  engine.vcAddBookMark(1000, "\xC3\xFB\xD7\xD6"); /* two characters of GBK */
  engine.vcAddBookMark(2000, "second");
  engine.vcFillBookMarkList(list, 5000);
  const LRESULT lines = SendMessageA(list, LB_GETCOUNT, 0, 0);
  return report("list", lines == 2, (long)lines);
}

static int boxesShown;

static LRESULT CALLBACK answerBoxes(int code, WPARAM window, LPARAM more) {
  char className[8] = "";
  if (code == HCBT_ACTIVATE && GetClassNameA((HWND)window, className, sizeof className) > 0 &&
      lstrcmpA(className, "#32770") == 0) {
    ++boxesShown;
    EndDialog((HWND)window, IDOK);
  }
  return CallNextHookEx(NULL, code, window, more);
}

static int showBox(void) {
  HHOOK hook = SetWindowsHookExA(WH_CBT, answerBoxes, NULL, GetCurrentThreadId());
  const int result = engine.vcNewTapeFile(11025, 16, 1, "no such folder\\example.wav");
  UnhookWindowsHookEx(hook);
  return report("box", result == -1 && boxesShown == 1, boxesShown);
}

int main(int argc, char** argv) {
  const DWORD start = GetTickCount();
  if (!load(argc > 1 ? argv[1] : "tavimo.dll")) return 1;
  report("load", 1, (long)(GetTickCount() - start)); /* in milliseconds */
  for (const char* const* folder = (const char*[]){"temp", "tmpwav", "zud", NULL}; *folder; ++folder) {
    CreateDirectoryA(*folder, NULL);
  }
  InitCommonControls();
  HWND window = makeMainWindow();
  HWND list = makeChild(window, "LISTBOX", 0);
  HWND bar = makeChild(window, PROGRESS_CLASSA, 120);
  if (!report("windows", window && list && bar, 3) || !report("can run", engine.vcCanRun(1) == 1, 1)) return 1;
  engine.vcSetMainWnd(window);
  engine.vcSetWaveInAndOutWndProc(0, window);
  engine.vcSetRecordingVolumeBarHandle(bar);
  int wentWell = report("tape", engine.vcNewTapeFile(11025, 16, 1, "tmpwav\\example.wav") == 0, 0);
  wentWell = record() && wentWell;
  engine.vcCloseWaveFile(3);
  wentWell = makeDigest() && wentWell;
  wentWell = draw(window) && wentWell;
  engine.vcCloseDigestFile();
  wentWell = fillList(list) && wentWell;
  wentWell = showBox() && wentWell;
  return wentWell ? 0 : 1;
}
