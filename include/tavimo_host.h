/* tavimo_host.h: the host kit, what a host program needs around the engine, the same on Linux and Windows.
 *
 * On Linux windows, device contexts and message queues live inside the process and come from here; on Windows they are
 * the platform's own and the kit is a thin static library over them. Text is GBK where it goes to or comes from the
 * engine and UTF-8 (names ending in _utf8, native paths) where it meets the operating system. Results of -1 are
 * failures; a handle that is null or destroyed receives nothing. All calls belong to the user-interface thread,
 * tvPostMessage apart, which any thread may call.
 */
#ifndef TAVIMO_HOST_H
#define TAVIMO_HOST_H

#include "tavimo.h"

#if defined(__cplusplus)
extern "C" {
#endif

/* ---- text and paths ----------------------------------------------------------------------------------------------- */

/** Converts UTF-8 to GBK. size is the room of gbk in bytes. Returns the bytes written with the terminating zero, or -1
 *  when the text is not UTF-8, has a character that GBK lacks, or does not fit; gbk is then an empty string. */
VC_API int tvGbkFromUtf8(const char* utf8, char* gbk, int size) VC_NOEXCEPT;

/** Converts GBK to UTF-8, in the same way. */
VC_API int tvUtf8FromGbk(const char* gbk, char* utf8, int size) VC_NOEXCEPT;

/** Turns a native path (UTF-8) into an engine path: GBK, backslashes, an absolute one with its drive letter. Returns
 *  the bytes written with the terminating zero, or -1 as above. */
VC_API int tvEnginePath(const char* native, char* path, int size) VC_NOEXCEPT;

/** Turns an engine path into a native path (UTF-8), in the same way. */
VC_API int tvNativePath(const char* path, char* native, int size) VC_NOEXCEPT;

#define TV_DRIVE_FIXED 3
#define TV_DRIVE_CDROM 5

/** Gives a drive letter a native folder and a kind; a null folder takes it away. Returns 0, or -1 when the letter is not
 *  a letter, the kind not one of the two or the folder not an absolute path to a folder. On Windows letters belong to
 *  the system and the answer is -1. */
VC_API int tvMapDrive(char letter, const char* native_folder, int kind) VC_NOEXCEPT;

/* ---- windows and messages ----------------------------------------------------------------------------------------- */

typedef intptr_t(VC_CALL* TvWindowProc)(VcWindow window, uint32_t message, uintptr_t wparam, intptr_t lparam);

#define TV_WINDOW 0
#define TV_LIST_BOX 1
#define TV_PROGRESS_BAR 2

/* The platform's own numbers, for hosts that do not include its headers. */
#define TV_WM_KEYUP 0x101
#define TV_WM_DROPFILES 0x233
#define TV_VK_F4 0x73
#define TV_VK_F11 0x7A
#define TV_VK_CONTROL 0x11
#define TV_LB_ADDSTRING 0x180
#define TV_LB_RESETCONTENT 0x184
#define TV_LB_GETTEXT 0x189
#define TV_LB_GETTEXTLEN 0x18A
#define TV_LB_GETCOUNT 0x18B
#define TV_PBM_SETRANGE 0x401
#define TV_PBM_SETPOS 0x402
#define TV_PBM_GETRANGE 0x407
#define TV_PBM_GETPOS 0x408

/** Creates a hidden window. title_gbk (may be null) is how other processes find a TV_WINDOW. proc may be null: the
 *  kind's own procedure then handles everything. A list box answers LB_ADDSTRING, LB_RESETCONTENT, LB_GETCOUNT,
 *  LB_GETTEXT and LB_GETTEXTLEN; a progress bar PBM_SETRANGE, PBM_SETPOS, PBM_GETPOS and PBM_GETRANGE. Returns null when
 *  the kind is unknown or no window is to be had. */
VC_API VcWindow tvCreateWindow(int kind, const char* title_gbk, TvWindowProc proc) VC_NOEXCEPT;

/** Destroys a window and the messages that wait for it. */
VC_API void tvDestroyWindow(VcWindow window) VC_NOEXCEPT;

/** What the window's kind does with a message; a procedure of the host passes on to it what it does not handle. */
VC_API intptr_t tvDefaultProc(VcWindow window, uint32_t message, uintptr_t wparam, intptr_t lparam) VC_NOEXCEPT;

/** Calls the window's procedure at once and returns its result; 0 for no window. */
VC_API intptr_t tvSendMessage(VcWindow window, uint32_t message, uintptr_t wparam, intptr_t lparam) VC_NOEXCEPT;

/** Puts a message behind those that wait. Returns 1, or 0 when the window does not exist or 10,000 messages wait. */
VC_API int tvPostMessage(VcWindow window, uint32_t message, uintptr_t wparam, intptr_t lparam) VC_NOEXCEPT;

/** Waits up to timeout_ms (below 0: for ever) for a first message, then dispatches all that wait; returns how many. */
VC_API int tvDispatchMessages(int timeout_ms) VC_NOEXCEPT;

/** The style of the window's class (see vcNoClose). */
VC_API uint32_t tvClassStyle(VcWindow window) VC_NOEXCEPT;

/** Sets whether a virtual key (0 to 255) is down, for vcIfCtrlPressed. */
VC_API void tvSetKeyDown(int virtual_key, int down) VC_NOEXCEPT;

/** Drops files on a window: sends it WM_DROPFILES. Returns 0, or -1 when the window or a path is missing. */
VC_API int tvDropFiles(VcWindow window, const char* const* paths_gbk, int count) VC_NOEXCEPT;

typedef void (*TvMessageBoxHandler)(const char* text_gbk, const char* caption_gbk, void* user);

/** Sends the engine's message boxes to a function of the host. Null: a line on standard error on Linux, the real box on
 *  Windows. */
VC_API void tvSetMessageBoxHandler(TvMessageBoxHandler handler, void* user) VC_NOEXCEPT;

typedef void (*TvBeepHandler)(void* user);

/** Sends the engine's beeps to a function of the host. Null: the bell of the terminal on Linux, the system's sound on
 *  Windows. */
VC_API void tvSetBeepHandler(TvBeepHandler handler, void* user) VC_NOEXCEPT;

/* ---- device contexts: memory pictures, 32 bits a pixel, white, with a black pen and black text --------------------- */

/** Creates a picture of 1 to 32767 pixels each way; null when that is not to be had. Text is drawn without a background
 *  fill. */
VC_API VcDc tvCreateDc(int width, int height) VC_NOEXCEPT;
VC_API void tvDestroyDc(VcDc dc) VC_NOEXCEPT;

/** Selects a font by family and height in pixels (1 to 1000). Returns 0, or -1 when no font of that name is installed
 *  that has Chinese characters; the font selected before then stays. */
VC_API int tvSelectFont(VcDc dc, const char* family_utf8, int pixel_height) VC_NOEXCEPT;

/** Lists the fonts that tvSelectFont takes, each name with a line feed behind it, in alphabetical order; a font that has its
 *  name in several languages comes once for each, on Windows once, in the system's language. The text is empty when there is
 *  none. Returns the bytes written with the terminating zero, or -1 when names_utf8 is null or size, its room in bytes, too
 *  small. */
VC_API int tvListFonts(char* names_utf8, int size) VC_NOEXCEPT;

/** Selects a solid pen of one pixel; colours are 0x00BBGGRR throughout. */
VC_API void tvSelectPen(VcDc dc, uint32_t colour) VC_NOEXCEPT;
VC_API void tvSetTextColour(VcDc dc, uint32_t colour) VC_NOEXCEPT;

/** Fills a rectangle; what lies outside the picture is left out. */
VC_API void tvFill(VcDc dc, int x, int y, int width, int height, uint32_t colour) VC_NOEXCEPT;

/** The colour of a pixel; 0xFFFFFFFF outside the picture. */
VC_API uint32_t tvPixel(VcDc dc, int x, int y) VC_NOEXCEPT;

/** The advances in pixels of the single bytes 0 to 255 in the selected font. Returns 0, or -1 without a font. */
VC_API int tvCharWidths(VcDc dc, int32_t widths[256]) VC_NOEXCEPT;

/** The width and height in pixels of count bytes of GBK text in the selected font; the height of an empty text is 0.
 *  Returns 0, or -1 without a font. */
VC_API int tvTextExtent(VcDc dc, const char* gbk, int count, int32_t* width, int32_t* height) VC_NOEXCEPT;

/** Writes the picture as a PNG file, whole or not at all. Returns 0, or -1 when it could not be written. */
VC_API int tvSavePng(VcDc dc, const char* native_path) VC_NOEXCEPT;

/* ---- audio devices, chosen before the engine opens them ------------------------------------------------------------ */

/** Chooses the device that vcWaveInOpenForTape opens from now on; one that is open stays. device is one of
 *    "default"           the sound system's own choice; so it is without a call of this, unless the environment variable
 *                        TAVIMO_WAVE_INPUT names another device in the same way
 *    a device's name     from tvListDevices, or the description that people know it by
 *    "none"              as on a machine without a microphone: opening is refused
 *    "host"              tvFeedWaveInput brings the sound
 *    "file:NATIVE_PATH"  a PCM wave file of 8 or 16 bits, named as tvEnginePath takes it; its sound, converted, at the
 *                        pace of real time, then silence
 *  Null takes the choice back. Returns 0, or -1 when device is empty or the file is no such file; the choice then stays.
 *  Whether a named device is there turns out when it is opened. */
VC_API int tvUseWaveInput(const char* device) VC_NOEXCEPT;

/** Brings sound in the format in which the engine has opened the "host" device: fills the blocks that are queued, in
 *  order, and posts each full one. Returns the bytes taken, 0 to count: those for which a block was queued, and none
 *  while the device is stopped. -1 when no "host" device is open, bytes is null or count is below 0. */
VC_API int tvFeedWaveInput(const void* bytes, int count) VC_NOEXCEPT;

/** Chooses the device that vcWaveOutOpenPlayFile and tvPlayWave open from now on, in the way of tvUseWaveInput: "default"
 *  (environment variable TAVIMO_WAVE_OUTPUT), a name, "none", or "host", whose position tvAdvanceWaveOutput moves. Returns
 *  0, or -1 when device is empty or a file. */
VC_API int tvUseWaveOutput(const char* device) VC_NOEXCEPT;

/** Adds bytes to what every open "host" output device has played, those that are paused apart. Returns 0, or -1 when none
 *  is open. */
VC_API int tvAdvanceWaveOutput(uint32_t bytes) VC_NOEXCEPT;

/** Lists the names of the input devices (input not 0) or of the output devices, each with a line feed behind it; the first
 *  is "default". The text is empty when no sound system answers, which may take three seconds. Returns the bytes written
 *  with the terminating zero, or -1 when names_utf8 is null or size, its room in bytes, too small. */
VC_API int tvListDevices(int input, char* names_utf8, int size) VC_NOEXCEPT;

/** Begins to play a copy of PCM sound on the chosen output device, in place of what plays; bytes behind the last whole
 *  frame are left out. Returns 0, or -1 when there is no device, less than a frame of sound, or a format other than 8 or
 *  16 bits, 1 or 2 channels and 1000 to 192000 Hz; what plays then goes on. */
VC_API int tvPlayWave(const void* bytes, int byte_count, int sample_rate, int bits_per_sample,
                      int channels) VC_NOEXCEPT;

/** How much of the sound has been heard, in milliseconds; -1 when nothing plays, not any more or never. */
VC_API int tvPlayedMs(void) VC_NOEXCEPT;
VC_API void tvStopPlaying(void) VC_NOEXCEPT;

#if defined(__cplusplus)
}
#endif

#endif
