/* tavimo.h: the audio and text engine of a language-learning repeater, as a host program sees it.
 *
 * The engine owns the audio devices, the wave files it records into and its own side files; the host owns every
 * window, device context and buffer. This header is all a host needs; tavimo_host.h adds windows, device contexts and
 * paths for hosts that want the same source on Linux and Windows.
 *
 * CONVENTIONS
 *
 *  1. Strings are zero-terminated byte strings in GBK (code page 936): bytes below 0x80 are ASCII, a character of two
 *     bytes starts with a byte of 0x81 or above. Paths separate folders with a backslash and may begin with a drive
 *     letter. Files open by paths with "/" too, but the places of side files are found by backslashes alone: hand over
 *     backslashes. On Linux "C:" is the root folder, and names are found without regard to case. A null path counts as
 *     a file that does not exist.
 *  2. Handles. VcWindow and VcDc are HWND and HDC on Windows, and handles of the host kit on Linux. A handle that is
 *     null or no longer valid receives nothing and shows nothing; it never crashes.
 *  3. Threads. Call every export from one thread, the user-interface thread. The engine starts one thread of its own,
 *     the digest worker (vcMakeDigestFile); vcGetMakeDigestPercentage and vcCancelMakeDigest are safe beside it.
 *  4. Ownership. The engine keeps nothing that a host hands over, except window handles and, for the length of a call,
 *     buffers. It writes into host buffers without asking for their size: every buffer's room stands at its argument.
 *     A null pointer for a result is allowed, and that result is then not written.
 *  5. Units. A time is a signed count of milliseconds from the first sound byte. A file offset counts bytes from the
 *     start of the file; a byte count of sound leaves the header out. A level is 0 (silence) to 128 (full scale) and
 *     stands for 40 ms of sound.
 *  6. Results. Counts, times and offsets are 32 bits wide everywhere. Failure is -1 as a rule and 0 for a test; each
 *     export says what else it answers. Failures that the learner must see are also shown in a modal message box.
 *  7. Folders. The engine works in folders of the process's current directory that the host makes before: "temp"
 *     (digests, parameters, compiled questions), "tmpwav" (the learner's recording, outputs on their way) and "zud"
 *     (study files). The file "tmp.sen" lies in the current directory itself.
 *  8. Files are replaced whole or not at all: a side file is written beside its final name and put in place when it
 *     is complete. The outputs of the question compiler are the exception. A derived file carries the last-write time of
 *     its source and is current only while both are equal.
 *  9. Opening a second digest, study file, script, tape, question index or wz file closes the first.
 * 10. Start-up: vcCanRun; then vcSetMainWnd, vcSetPlayFormWndProc, and in a program that records
 *     vcSetWaveInAndOutWndProc and vcSetRecordingVolumeBarHandle before the capture device is opened.
 *     Shut-down: stop and close capture, close the tape, the output device, the digest, the study file, the script, the
 *     question index and the wz file. The engine restores no window procedure: keep the library loaded as long as the
 *     hooked windows live.
 */
#ifndef TAVIMO_H
#define TAVIMO_H

#include <stdint.h>

#if defined(_WIN32)
struct HWND__;
struct HDC__;
typedef struct HWND__* VcWindow;
typedef struct HDC__* VcDc;
#else
typedef struct VcWindowTag* VcWindow;
typedef struct VcDcTag* VcDc;
#endif

#if defined(_WIN32) && !defined(_WIN64)
#define VC_CALL __stdcall
#else
#define VC_CALL
#endif

#if defined(_WIN32) || !defined(__GNUC__)
#define VC_API
#else
#define VC_API __attribute__((visibility("default")))
#endif

#if defined(__cplusplus)
#define VC_NOEXCEPT noexcept
extern "C" {
#else
#define VC_NOEXCEPT
#endif

/* ======================================================================================================================
 * host-windows: the windows the engine notifies, and the two it stands in front of
 *
 * Messages the engine sends: WM_KEYUP (0x101) with VK_F11 (0x7A) posted to the window that received a dropped file;
 * WM_KEYUP with VK_F4 (0x73) sent to the main window after each recorded block; PBM_SETPOS (0x402) posted to the level
 * bar after each captured block.
 * ==================================================================================================================== */

/** @brief Registers the window that receives the engine's notifications.
 *  @param window the host's main window; null for none.
 *  @failure none.
 *  @requires nothing. */
VC_API void VC_CALL vcSetMainWnd(VcWindow window) VC_NOEXCEPT;

/** @brief Registers a debug window. The engine sends nothing to it.
 *  @param window any window; null for none.
 *  @failure none.
 *  @requires nothing. */
VC_API void VC_CALL vcSetDebugWnd(VcWindow window) VC_NOEXCEPT;

/** @brief Puts the engine in front of a window's procedure so that it receives dropped files (WM_DROPFILES, 0x233).
 *
 *  After a drop the path of the first file waits for vcGetDragFile and the window is posted WM_KEYUP with VK_F11.
 *  Every other message reaches the host's procedure unchanged, WM_DROPFILES never does.
 *  @param window the window; registering the same one again changes nothing, another one takes its place.
 *  @failure a window that does not exist is not registered; the earlier one stays.
 *  @requires nothing. */
VC_API void VC_CALL vcSetPlayFormWndProc(VcWindow window) VC_NOEXCEPT;

/** @brief Puts HidedWndProcIn in front of the window that receives the capture device's messages.
 *  @param ignored any value; it has no effect.
 *  @param window the window; null or a window that does not exist changes nothing, the same one again neither.
 *  @failure none.
 *  @requires nothing; before the capture device is opened. */
VC_API void VC_CALL vcSetWaveInAndOutWndProc(intptr_t ignored, VcWindow window) VC_NOEXCEPT;

/** @brief The window procedure that stands in front of the capture window.
 *
 *  It passes every message on to the host's own procedure with the same four values; an MM_WIM_DATA (0x3C0) message
 *  that arrives while capture runs is first taken as one captured block.
 *  @param window the window the message is for.
 *  @param message the message number.
 *  @param wparam the message's first value, pointer-wide.
 *  @param lparam the message's second value, pointer-wide.
 *  @return what the host's procedure returns; 0 when no window was registered.
 *  @failure none.
 *  @requires vcSetWaveInAndOutWndProc. */
VC_API intptr_t VC_CALL HidedWndProcIn(VcWindow window, uint32_t message, uintptr_t wparam,
                                       intptr_t lparam) VC_NOEXCEPT;

/** @brief Takes away or gives back the close command of every window of a window's class.
 *  @param window a window of the class.
 *  @param flag nonzero sets CS_NOCLOSE (0x200) in the class style, 0 clears it; no other bit changes.
 *  @failure a window that does not exist: nothing changes.
 *  @requires nothing. */
VC_API void VC_CALL vcNoClose(VcWindow window, int32_t flag) VC_NOEXCEPT;

/** @brief Tells whether the Ctrl key was down at the last input message.
 *  @return 1 if it was, else 0.
 *  @failure none.
 *  @requires nothing. */
VC_API int32_t VC_CALL vcIfCtrlPressed(void) VC_NOEXCEPT;

/* ======================================================================================================================
 * wave-files: checks of wave files, and times and offsets in the open tape
 *
 * Bytes per second are always channels x bits per sample x sample rate / 8; the average that a file stores is not used.
 * ==================================================================================================================== */

/** @brief Tells whether a file is a PCM wave file of 8 or 16 bits per sample. No message is shown.
 *
 *  The data chunk is not looked for and the channel count is not tested.
 *  @param path the file.
 *  @return 1 if it is, else 0.
 *  @failure 0.
 *  @requires nothing. */
VC_API int32_t VC_CALL vcIsWaveFile(const char* path) VC_NOEXCEPT;

/** @brief Tells whether a path ends in ".mp3", in any letter case. The file is not opened.
 *  @param path the path.
 *  @return 1 if it does, else 0; a path of less than 4 bytes gives 0.
 *  @failure 0.
 *  @requires nothing. */
VC_API int32_t VC_CALL vcIsMp3File(const char* path) VC_NOEXCEPT;

/** @brief Gives the recording format (not that of a file examined by vcIsWaveFile).
 *  @param sample_rate receives samples per second; 11025 at load.
 *  @param bits_per_sample receives 8 or 16; 0 at load.
 *  @param channels receives 1 or 2; 0 at load.
 *  @return always 0.
 *  @failure none.
 *  @requires nothing. */
VC_API int32_t VC_CALL vcGetFileFormat(int32_t* sample_rate, int32_t* bits_per_sample, int32_t* channels) VC_NOEXCEPT;

/** @brief Converts a time to a file offset in the open tape.
 *  @param time_ms milliseconds; negative or past the end is allowed.
 *  @return the file offset: the byte count of that time, truncated and made even toward zero, plus the offset of the
 *          first sound byte. Not held to the sound data; held to 32 bits.
 *  @failure none; with no format known the offset of the first sound byte.
 *  @requires an open tape. */
VC_API int32_t VC_CALL vcTimeToOffset(int32_t time_ms) VC_NOEXCEPT;

/** @brief Converts a byte count of sound to a time, in a format the host names.
 *  @param format three values: sample rate, bits per sample, channels.
 *  @param byte_count bytes of sound, without the header.
 *  @return milliseconds, truncated toward zero; 0 for a format of 0 bytes per second.
 *  @failure 0 for a null format.
 *  @requires nothing. */
VC_API int32_t VC_CALL vcOffsetToTime(const int32_t* format, int32_t byte_count) VC_NOEXCEPT;

/** @brief Sets the current position of the open tape to a time, as vcTimeToOffset converts it.
 *  @param time_ms milliseconds.
 *  @failure none.
 *  @requires an open tape. */
VC_API void VC_CALL vcSetFilePosByTime(int32_t time_ms) VC_NOEXCEPT;

/** @brief The same entry as vcSetFilePosByTime under a second name.
 *  @param time_ms milliseconds.
 *  @failure none.
 *  @requires an open tape. */
VC_API void VC_CALL vcGotoRecordStartPos(int32_t time_ms) VC_NOEXCEPT;

/** @brief Sets the current position of the open tape to a file offset, unchanged and unchecked.
 *  @param file_offset bytes from the start of the file.
 *  @failure none.
 *  @requires an open tape. */
VC_API void VC_CALL vcSetFilePosByOffset(int32_t file_offset) VC_NOEXCEPT;

/** @brief Sets the current position to the end of the tape's sound and moves the file's own pointer there.
 *  @failure none.
 *  @requires an open tape. */
VC_API void VC_CALL vcGotoFileEnd(void) VC_NOEXCEPT;

/** @brief Leaves the open tape's chunks and closes it. Does nothing when no tape is open.
 *  @failure none.
 *  @requires nothing. */
VC_API void VC_CALL vcCloseReadOnlyFile(void) VC_NOEXCEPT;

/** @brief Finishes and closes the open tape. Does nothing when no tape is open.
 *  @param mode 3 for a new tape: writes the final chunk sizes and a pad byte after sound of odd length; 2 for an
 *              appended one: writes the sound's length into the data chunk and leaves the file's length as it is; any
 *              other value closes only.
 *  @failure none.
 *  @requires nothing. */
VC_API void VC_CALL vcCloseWaveFile(int32_t mode) VC_NOEXCEPT;

/* ======================================================================================================================
 * output-device: the device whose position is the learner's place in the tape
 *
 * The engine queues no sound on it; while a tape is recorded the position comes from the blocks captured.
 * ==================================================================================================================== */

/** @brief Opens the output device in the format of the wave file last examined or opened; one that is open is closed
 *         first.
 *  @return 0.
 *  @failure -1: the platform refuses.
 *  @requires vcNewTapeFile, vcAppendTapeFile or vcIsWaveFile. */
VC_API int32_t VC_CALL vcWaveOutOpenPlayFile(void) VC_NOEXCEPT;

/** @brief Closes the output device, or leaves it, by a stop mode, and drops the capture messages that wait.
 *
 *  While capture runs the messages stay: a block whose message is dropped would never be used again.
 *  @param stop_mode 1, 2, 3, 5, 6, 7, 11, 12 and 13 close; any other value does nothing.
 *  @failure none.
 *  @requires nothing. */
VC_API void VC_CALL vcWaveOutClose(int32_t stop_mode) VC_NOEXCEPT;

/** @brief Gives the current position: the tape's position, moved on by what the output device has played of a block.
 *  @return milliseconds from the first sound byte; 0 for a position before it. Without a device the tape's position.
 *  @failure none.
 *  @requires an open tape. */
VC_API int32_t VC_CALL vcGetWfOutTimePos(void) VC_NOEXCEPT;

/** @brief A fixed answer that hosts still ask for.
 *  @return always 0.
 *  @failure none.
 *  @requires nothing. */
VC_API int32_t VC_CALL vcReturnFileStopPos(void) VC_NOEXCEPT;

/** @brief Does nothing; hosts still call it.
 *  @failure none.
 *  @requires nothing. */
VC_API void VC_CALL vcPlaySample(void) VC_NOEXCEPT;

/* ======================================================================================================================
 * tape-files: the wave files that receive the learner's voice
 *
 * Failures are shown in a box with the caption "Tavimo" and an "ErrorNo" that tells the step, and answered with -1.
 * ==================================================================================================================== */

/** @brief Sets the recording format. Every value is taken; the capture device refuses what makes no sense.
 *  @param sample_rate samples per second.
 *  @param bits_per_sample 8 or 16.
 *  @param channels 1 or 2.
 *  @failure none.
 *  @requires nothing. */
VC_API void VC_CALL vcSetTapeFileFormat(int32_t sample_rate, int32_t bits_per_sample, int32_t channels) VC_NOEXCEPT;

/** @brief Creates a tape and opens it, positioned at the start of its sound; an existing file is emptied. A tape that is
 *         open is closed first.
 *  @param sample_rate samples per second; like the next two it becomes the recording format.
 *  @param bits_per_sample 8 or 16.
 *  @param channels 1 or 2.
 *  @param path the tape, as a rule tmpwav\tmpmic.wav.
 *  @return 0.
 *  @failure -1 after a message.
 *  @requires the tape's folder. */
VC_API int32_t VC_CALL vcNewTapeFile(int32_t sample_rate, int32_t bits_per_sample, int32_t channels,
                                     const char* path) VC_NOEXCEPT;

/** @brief Opens a PCM wave file to record further into it, positioned at the start of its sound. Its format becomes the
 *         recording format. A tape that is open is closed first.
 *
 *  The sound is taken to reach to the end of the file; chunks behind it count as sound.
 *  @param path the wave file.
 *  @return the duration of the sound in milliseconds, 0 or more.
 *  @failure -1 after a message; no tape is open then.
 *  @requires nothing. */
VC_API int32_t VC_CALL vcAppendTapeFile(const char* path) VC_NOEXCEPT;

/** @brief Moves a closed tape to its lasting name, replacing a file that is there.
 *  @param source_path the tape.
 *  @param destination_path where it is to lie.
 *  @return 0.
 *  @failure -1: both files are as they were. No message.
 *  @requires vcCloseWaveFile. */
VC_API int32_t VC_CALL vcSaveTapeFile(const char* source_path, const char* destination_path) VC_NOEXCEPT;

/* ======================================================================================================================
 * capture: the input device, recording into the tape, and the silence parameters
 *
 * The device returns blocks of 1256 bytes as MM_WIM_DATA messages to the window of vcSetWaveInAndOutWndProc. Of every
 * block the level bar is posted the level (PBM_SETPOS); while the tape is recorded the block is appended to it, and the
 * main window is sent WM_KEYUP with VK_F4. A block must be dispatched within about 170 ms at 22050 bytes a second, or
 * sound is lost.
 * ==================================================================================================================== */

/** @brief Registers the progress bar that shows the input level, and sends it its range, 0 to 128.
 *  @param bar the progress bar; null for none.
 *  @failure none.
 *  @requires nothing. */
VC_API void VC_CALL vcSetRecordingVolumeBarHandle(VcWindow bar) VC_NOEXCEPT;

/** @brief Opens the input device; blocks circulate and the level bar moves, but nothing is written yet.
 *  @param sample_rate samples per second of the open tape; like the next two it becomes the recording format.
 *  @param bits_per_sample 8 or 16.
 *  @param channels 1 or 2.
 *  @return 1 when the device runs with its four blocks queued.
 *  @failure 0, without a message: the device is refused or already open (which goes on), or a block could not be queued;
 *           the device may then be open: vcWaveInCloseForTape closes it.
 *  @requires vcSetWaveInAndOutWndProc. */
VC_API int32_t VC_CALL vcWaveInOpenForTape(int32_t sample_rate, int32_t bits_per_sample, int32_t channels) VC_NOEXCEPT;

/** @brief Starts to append captured blocks to the tape, at its current position; sound behind that no longer counts.
 *  @failure no tape is open: nothing happens.
 *  @requires vcNewTapeFile or vcAppendTapeFile, vcWaveInOpenForTape. */
VC_API void VC_CALL vcRecordTape(void) VC_NOEXCEPT;

/** @brief Stops appending; the device goes on.
 *  @return the duration of the tape's sound in milliseconds; 0 when no format is known.
 *  @failure none.
 *  @requires vcRecordTape. */
VC_API int32_t VC_CALL vcStopRecordTape(void) VC_NOEXCEPT;

/** @brief Stops the device; the block it was filling comes back and counts as a whole one.
 *  @failure none.
 *  @requires vcWaveInOpenForTape. */
VC_API void VC_CALL vcPauseRecording(void) VC_NOEXCEPT;

/** @brief Starts the device again after vcPauseRecording.
 *  @failure none.
 *  @requires vcPauseRecording. */
VC_API void VC_CALL vcRestartRecording(void) VC_NOEXCEPT;

/** @brief Closes the input device and drops the blocks that wait. The tape stays open. Does nothing when it is closed.
 *  @failure none.
 *  @requires nothing. */
VC_API void VC_CALL vcWaveInCloseForTape(void) VC_NOEXCEPT;

/** @brief Gives the duration of one block in the recording format.
 *  @return milliseconds, about 56.96 for 22050 bytes a second; 0 when no format is set.
 *  @failure 0.
 *  @requires vcSetTapeFileFormat. */
VC_API double VC_CALL vcGetRecordBufLenInTime(void) VC_NOEXCEPT;

/** @brief Gives the disk space that recording takes.
 *  @param seconds the duration.
 *  @return millions of bytes, rounded down; 0 when no format is set.
 *  @failure 0.
 *  @requires vcSetTapeFileFormat. */
VC_API int32_t VC_CALL vcCountDiskSpace(double seconds) VC_NOEXCEPT;

/** @brief A fixed answer that hosts still ask for.
 *  @return always 0.
 *  @failure none.
 *  @requires nothing. */
VC_API int32_t VC_CALL vcGetTimeToDisplay(void) VC_NOEXCEPT;

/** @brief Sets the two parameters by which vcMakeSentence finds silence.
 *  @param threshold the loudest level that still counts as silent, 0 to 128; 10 at load.
 *  @param silence_ms the silence that ends a sentence, in milliseconds; kept in steps of 40 ms, rounded down. 40 to
 *                    40999 are usable; 0 at load.
 *  @failure none; vcMakeSentence refuses a length outside the range.
 *  @requires nothing. */
VC_API void VC_CALL vcSetSilentParam(int32_t threshold, int32_t silence_ms) VC_NOEXCEPT;

/* ======================================================================================================================
 * digest-files: one level byte per 40 ms of a recording
 *
 * A digest has no header: byte k is the level of the 40 ms from k x 40 ms, taken from the last sample of that stretch.
 * The working digest of D:\lessons\unit1.wav is temp\unit1.tmp, that of unit.1.wav temp\unit.1.tmp: only the last dot begins
 * an extension. One that lies beside the recording (D:\lessons\unit1.tmp) is taken over by vcIfDigestFileExist. The makers take paths of at most 199 bytes; vcIfDigestFileExist takes such with a
 * file name of at most 99.
 * ==================================================================================================================== */

/** @brief Finds the current digest of a recording, or takes over the one beside it.
 *  @param recording_path the recording.
 *  @return 1 when the working digest carries the recording's file time or a digest beside the recording was copied
 *          into its place (whatever its time; the copy itself may fail unseen); else 0.
 *  @failure 0; also for a path of more than 199 bytes or a file name of more than 99.
 *  @requires the folder temp. */
VC_API int32_t VC_CALL vcIfDigestFileExist(const char* recording_path) VC_NOEXCEPT;

/** @brief Starts the worker thread that makes a digest, and returns at once.
 *
 *  Poll vcGetMakeDigestPercentage until it reads 1000. A wave file that is not the source itself is deleted by the
 *  worker when it has finished: it was a temporary copy.
 *  @param source_path the recording whose file time the digest gets.
 *  @param wave_path the wave file to summarise, 1 or 2 channels: the source itself or a temporary wave made from it.
 *  @param digest_path the digest to write.
 *  @return 1 when the worker was started; 0 when it could not be, when one is already running (which goes on), or for
 *          a null path or one of more than 199 bytes.
 *  @failure a wave that cannot be opened or a digest that cannot be created: the percentage stays 0 and no file
 *           changes, so ask vcIsWaveFile first and give up after some seconds of 0. A digest that could not be
 *           written whole: 1000, and no digest is in place. After a result of 0 the percentage is still that of the
 *           job before.
 *  @requires the digest's folder. */
VC_API int32_t VC_CALL vcMakeDigestFile(const char* source_path, const char* wave_path,
                                        const char* digest_path) VC_NOEXCEPT;

/** @brief Gives the progress of the digest worker.
 *  @return 0 to 100 while it works, 1000 when everything is done; 0 before the first job.
 *  @failure none.
 *  @requires nothing. */
VC_API int32_t VC_CALL vcGetMakeDigestPercentage(void) VC_NOEXCEPT;

/** @brief Asks the digest worker to stop. The percentage becomes 1000 and no digest is left.
 *  @failure none; without a running worker nothing happens.
 *  @requires nothing. */
VC_API void VC_CALL vcCancelMakeDigest(void) VC_NOEXCEPT;

/** @brief Makes a digest on the calling thread.
 *  @param source_path the recording whose file time the digest gets; null leaves the time alone.
 *  @param wave_path the wave file to summarise, 1 or 2 channels. It is never deleted.
 *  @param digest_path the digest to write.
 *  @param progress_window a progress bar of range 0 to 100 that is sent PBM_SETPOS (0x402), rising, every 40.96 s of
 *                         sound; may be null. Nothing is sent at the end.
 *  @return 1 when the digest was written, else -1.
 *  @failure -1: the wave cannot be opened, a path is null (the source apart) or longer than 199 bytes, or the digest
 *           cannot be written whole; an earlier digest then stays.
 *  @requires the digest's folder. */
VC_API int32_t VC_CALL vcSimpleMakeDigestFile(const char* source_path, const char* wave_path, const char* digest_path,
                                              VcWindow progress_window) VC_NOEXCEPT;

/** @brief Opens a digest for drawing and segmentation; one that is open is closed first.
 *  @param digest_path the digest.
 *  @return its length in bytes, that is its number of levels.
 *  @failure -1: it cannot be opened; none is open then.
 *  @requires nothing. */
VC_API int32_t VC_CALL vcOpenDigestFile(const char* digest_path) VC_NOEXCEPT;

/** @brief Closes the open digest. Does nothing when none is open.
 *  @failure none.
 *  @requires nothing. */
VC_API void VC_CALL vcCloseDigestFile(void) VC_NOEXCEPT;

/** @brief Shortens a digest that covers more than a duration, by dropping levels evenly.
 *
 *  A digest that covers less, or at most 40 ms more, stays as it is. The digest keeps its file time.
 *  @param digest_path the digest.
 *  @param duration_ms the duration in milliseconds; less than about half of what the digest covers empties it.
 *  @failure the digest cannot be opened or the folder tmpwav is missing: nothing changes.
 *  @requires the folder tmpwav. */
VC_API void VC_CALL vcAdjustDigestFile(const char* digest_path, int32_t duration_ms) VC_NOEXCEPT;

/* ======================================================================================================================
 * waveforms: drawn with the pen selected in the device context; clearing the area is the host's
 *
 * Heights are levels scaled by 1/128 and truncated. A height or width below 1, or fewer than 1 level a column, draws
 * nothing.
 * ==================================================================================================================== */

/** @brief Draws the open digest as a half wave standing on the bottom row.
 *
 *  Where the recording ends inside the area a red line marks the end.
 *  @param dc the device context.
 *  @param height, width the area from (0, 0), in pixels.
 *  @param start_ms the time of the first column; a time past the end shows the red line in column 0.
 *  @param levels_per_column how many levels of 40 ms one column averages, at least 1.
 *  @failure no digest open: nothing is drawn.
 *  @requires vcOpenDigestFile. */
VC_API void VC_CALL vcDrawHalfDigestWave(VcDc dc, int32_t height, int32_t width, int32_t start_ms,
                                         int32_t levels_per_column) VC_NOEXCEPT;

/** @brief Draws the open digest as a full wave: centred on a middle line, or as bars on the bottom.
 *
 *  Even columns show the levels, odd ones the mean of their neighbours. Nothing marks the end of the recording.
 *  @param dc the device context.
 *  @param height, width the area from (0, 0), in pixels; of a width above 2048 the first 2048 columns are drawn.
 *  @param start_ms the time of the first column; a negative one is past the end.
 *  @param levels_per_pair how many levels of 40 ms two columns average, at least 1.
 *  @param from_bottom 0 centred on the middle line, nonzero bars of twice that height without a line.
 *  @failure no digest open: nothing is drawn.
 *  @requires vcOpenDigestFile. */
VC_API void VC_CALL vcDrawSrcDigestWave(VcDc dc, int32_t height, int32_t width, int32_t start_ms,
                                        int32_t levels_per_pair, int32_t from_bottom) VC_NOEXCEPT;

/** @brief Draws the digest of the learner's recording, "tmpwav\tmpmic.tmp", as vcDrawSrcDigestWave draws the open one.
 *  @param dc the device context.
 *  @param height, width the area from (0, 0), in pixels; of a width above 2048 the first 2048 columns are drawn.
 *  @param start_ms the time of the first column; a negative one is past the end.
 *  @param levels_per_pair how many levels of 40 ms two columns average, at least 1.
 *  @param from_bottom 0 centred on the middle line, nonzero bars of twice that height without a line.
 *  @failure the digest cannot be opened: nothing is drawn.
 *  @requires nothing; make the digest with vcSimpleMakeDigestFile. */
VC_API void VC_CALL vcDrawManVoiceDigestWave(VcDc dc, int32_t height, int32_t width, int32_t start_ms,
                                             int32_t levels_per_pair, int32_t from_bottom) VC_NOEXCEPT;

/** @brief Draws the middle line of the recording's 600-column overview; its levels are never filled.
 *  @param dc the device context.
 *  @param height the area's height in pixels.
 *  @failure none.
 *  @requires nothing. */
VC_API void VC_CALL vcDrawSrcWave(VcDc dc, int32_t height) VC_NOEXCEPT;

/** @brief Draws the overview of the learner's voice: a line for each of columns 1 to 600, then the middle line.
 *  @param dc the device context; the overview is 600 columns wide whatever the area.
 *  @param height the area's height in pixels.
 *  @failure none.
 *  @requires vcSetVisualWaveDataMan. */
VC_API void VC_CALL vcDrawManWave(VcDc dc, int32_t height) VC_NOEXCEPT;

/* ======================================================================================================================
 * voice-overview: the learner's voice in 600 levels
 * ==================================================================================================================== */

/** @brief Reduces the learner's recording, "tmpwav\tmpmic.wav", to the 600 levels that vcDrawManWave draws.
 *
 *  The samples are taken as 16 bits whatever the format; at most the first 165,750 count. A recording of fewer than 600
 *  samples shows nothing.
 *  @param clear nonzero clears the overview and reads no file.
 *  @return 0; 1 when the recording is longer than what is shown.
 *  @failure -1 after a message; the overview stays as it was.
 *  @requires a closed tape. */
VC_API int32_t VC_CALL vcSetVisualWaveDataMan(int32_t clear) VC_NOEXCEPT;

/* ======================================================================================================================
 * segmentation: cutting a recording into sentences
 * ==================================================================================================================== */

/** @brief Cuts the recording of the open digest into sentences and writes their starts to "tmp.sen".
 *
 *  A sentence starts two levels (80 ms) before its first sound and ends with a silence of the length set by
 *  vcSetSilentParam, which belongs to it. "tmp.sen" is a sequence of unsigned 32-bit little-endian milliseconds,
 *  never decreasing, each a multiple of 40; vcReadTmpIdx takes it over.
 *  @return the number of sentences when it is 2 or more; 0 for fewer, or for a silence length outside 40 ms to
 *          40999 ms, and then no "tmp.sen" is left.
 *  @failure -1: no digest is open, or "tmp.sen" cannot be written.
 *  @requires vcOpenDigestFile, vcSetSilentParam. */
VC_API int32_t VC_CALL vcMakeSentence(void) VC_NOEXCEPT;

/* ======================================================================================================================
 * study-file: bookmarks and sentence starts of a recording
 *
 * A study file is 20 bookmarks of 16 bytes (320 bytes), then one unsigned 32-bit start time in milliseconds for every
 * sentence, little-endian. That of D:\course\unit1.wav is zud\unit1.zud, or else D:\course\unit1.zud; it is always
 * written to zud. Paths are at most 223 bytes.
 * ==================================================================================================================== */

/** @brief Opens the study file of a recording and empties the bookmark table in memory.
 *  @param recording_path the recording; it need not exist.
 *  @return the number of sentence starts in the study file, 0 or more.
 *  @failure -1: no study file in zud or beside the recording, or one shorter than 320 bytes, or a path of more than
 *           223 bytes. The bookmark table is empty all the same.
 *  @requires nothing. */
VC_API int32_t VC_CALL vcOpenSentenceFile(const char* recording_path) VC_NOEXCEPT;

/** @brief Loads the bookmark table and the sentence starts of the open study file, and closes it.
 *  @param starts_ms receives the starts, unsigned 32-bit milliseconds; room for count values. Values the file does
 *                   not hold stay as they were.
 *  @param count how many starts to read; 0 or below reads the bookmarks alone.
 *  @return count.
 *  @failure -1: no study file is open; nothing is touched.
 *  @requires vcOpenSentenceFile. */
VC_API int32_t VC_CALL vcReadSentenceData(uint32_t* starts_ms, int32_t count) VC_NOEXCEPT;

/** @brief Reads two neighbouring 32-bit values of the open study file.
 *  @param index counts 32-bit values from the start of the file: sentence k (from 0) is 80 + k.
 *  @param first receives value index; a value the file does not hold leaves it alone.
 *  @param second receives value index + 1, in the same way.
 *  @failure no study file is open: nothing is written.
 *  @requires vcOpenSentenceFile, before vcReadSentenceData. */
VC_API void VC_CALL vcGetSentence(int32_t index, uint32_t* first, uint32_t* second) VC_NOEXCEPT;

/** @brief Takes over the starts that vcMakeSentence wrote, and deletes "tmp.sen".
 *  @param starts_ms receives the starts, unsigned 32-bit milliseconds; room for count values. Values the file does
 *                   not hold stay as they were.
 *  @param count the result of vcMakeSentence.
 *  @return 0.
 *  @failure -1: there is no "tmp.sen" (the array stays as it was), or it could not be deleted.
 *  @requires vcMakeSentence. */
VC_API int32_t VC_CALL vcReadTmpIdx(uint32_t* starts_ms, int32_t count) VC_NOEXCEPT;

/** @brief Stores the bookmark table and the sentence starts of a recording in the folder zud.
 *
 *  With fewer than 2 starts only the bookmarks are stored, and with no bookmark either the study file in zud is
 *  deleted. The one beside the recording is never changed.
 *  @param recording_path the recording; it need not exist.
 *  @param starts_ms the starts, count unsigned 32-bit milliseconds.
 *  @param count how many.
 *  @failure the file cannot be written whole (no folder zud, disk full, path of more than 223 bytes), or starts_ms is
 *           null for a count of 2 or more: the earlier study file stays; the host is not told.
 *  @requires the folder zud. */
VC_API void VC_CALL vcWriteExtraFileData(const char* recording_path, const uint32_t* starts_ms,
                                         int32_t count) VC_NOEXCEPT;

/** @brief Writes values to a mark index file: count unsigned 32-bit little-endian values and nothing else.
 *  @param path the file.
 *  @param values the values.
 *  @param count how many; 0 or 1 writes nothing and leaves an existing file as it is.
 *  @failure the file cannot be written: it stays as it was; the host is not told.
 *  @requires nothing. */
VC_API void VC_CALL vcWriteMarkIdx(const char* path, const uint32_t* values, int32_t count) VC_NOEXCEPT;

/* ======================================================================================================================
 * bookmarks: up to 20 moments of the recording whose study file was read last
 *
 * The list is in the order of adding. None of these exports touches a file: vcWriteExtraFileData stores the table.
 * ==================================================================================================================== */

/** @brief Adds a bookmark at the end of the list.
 *  @param time_ms the time in milliseconds, unsigned; 0 adds nothing.
 *  @param label GBK text; more than 11 bytes are cut before the character that does not fit; null is empty.
 *  @return 0.
 *  @failure -1: there are 20 bookmarks already.
 *  @requires vcOpenSentenceFile, which may have answered -1 for a new recording; else vcReadSentenceData too, which loads
 *            the stored list in place of this one. */
VC_API int32_t VC_CALL vcAddBookMark(uint32_t time_ms, const char* label) VC_NOEXCEPT;

/** @brief Deletes a bookmark; those behind it move up.
 *  @param index the bookmark, 0 to 19; a larger one counts as 19, a negative one changes nothing.
 *  @failure none.
 *  @requires nothing. */
VC_API void VC_CALL vcDeleteBookMark(int32_t index) VC_NOEXCEPT;

/** @brief Deletes every bookmark.
 *  @failure none.
 *  @requires nothing. */
VC_API void VC_CALL vcDeleteAllBookMark(void) VC_NOEXCEPT;

/** @brief Counts the bookmarks.
 *  @return 0 to 20.
 *  @failure none.
 *  @requires nothing. */
VC_API int32_t VC_CALL vcGetTotalBookMarks(void) VC_NOEXCEPT;

/** @brief Gives a bookmark's time.
 *  @param index the bookmark, 0 to 19.
 *  @return the time in milliseconds, to be read as unsigned; behind the list what the slot still holds.
 *  @failure 0 outside 0 to 19.
 *  @requires nothing. */
VC_API int32_t VC_CALL vcGetBookMarkTime(int32_t index) VC_NOEXCEPT;

/** @brief Adds a line "mm:ss   label" to a list box for every bookmark (LB_ADDSTRING, 0x180); the k-th line added is
 *         bookmark k. The list box is not emptied first.
 *  @param list_box the list box.
 *  @param total_ms the recording's length in milliseconds. A bookmark at or behind it empties the whole table: it belongs
 *                  to another recording.
 *  @return the number of lines added.
 *  @failure none.
 *  @requires vcReadSentenceData. */
VC_API int32_t VC_CALL vcFillBookMarkList(VcWindow list_box, int32_t total_ms) VC_NOEXCEPT;

/* ======================================================================================================================
 * parameter-files: settings that the engine keeps for the host
 *
 * The sound parameters of D:\course\unit1.wav are temp\unit1.par, 20 bytes that only the host understands; they are
 * current while they carry the recording's file time. Those beside the recording (D:\course\unit1.par) are taken over.
 * ==================================================================================================================== */

/** @brief Finds the current sound parameters of a recording, or takes over those beside it.
 *  @param recording_path the recording, at most 199 bytes, its file name at most 99.
 *  @return 1 when the file in temp carries the recording's file time or one beside the recording was copied into its
 *          place (whatever its time; the copy itself may fail unseen); else 0.
 *  @failure 0.
 *  @requires the folder temp. */
VC_API int32_t VC_CALL vcIfSoundParaFileExist(const char* recording_path) VC_NOEXCEPT;

/** @brief Stores sound parameters and gives them the recording's file time.
 *  @param recording_path the recording; when it does not exist the time stays.
 *  @param parameter_path the file, as a rule temp\NAME.par.
 *  @param record 20 bytes.
 *  @return 1.
 *  @failure -1: the file cannot be written whole; an earlier one stays. Also for a null record.
 *  @requires nothing. */
VC_API int32_t VC_CALL vcWriteSoundFilePara(const char* recording_path, const char* parameter_path,
                                            const void* record) VC_NOEXCEPT;

/** @brief Reads sound parameters.
 *  @param parameter_path the file.
 *  @param record receives 20 bytes; what a shorter file does not hold stays as it was.
 *  @return 1.
 *  @failure -1: the file cannot be opened.
 *  @requires nothing. */
VC_API int32_t VC_CALL vcReadSoundFilePara(const char* parameter_path, void* record) VC_NOEXCEPT;

/** @brief Writes three numbers as three lines of text, each ended by CR LF.
 *  @param path the file.
 *  @param first, second, third the numbers.
 *  @failure the file cannot be written whole: an earlier one stays; the host is not told.
 *  @requires nothing. */
VC_API void VC_CALL vcWriteParaFile(const char* path, int32_t first, int32_t second, int32_t third) VC_NOEXCEPT;

/** @brief Tells whether the first three lines of a file begin with three numbers.
 *
 *  A line is at most 98 bytes with its line feed; what is longer counts as the next line. A line without digits is 0.
 *  @param path the file.
 *  @param first, second, third the numbers.
 *  @return 1 when they are the file's, in this order; else 0.
 *  @failure 0: the file cannot be opened or has fewer lines.
 *  @requires nothing. */
VC_API int32_t VC_CALL vcIfParaMatch(const char* path, int32_t first, int32_t second, int32_t third) VC_NOEXCEPT;

/* ======================================================================================================================
 * stereo-to-mono: one channel out of two
 * ==================================================================================================================== */

/** @brief Writes the first channel of a wave file to another one.
 *  @param source_path a wave file of 8 or 16 bits; never changed.
 *  @param destination_path the wave file to write; an existing one is replaced.
 *  @return 0 when it was written; 1 when the source has one channel already, and nothing is written.
 *  @failure -1: the source cannot be opened or converted (3 channels and more, other sizes, a rate of 0) or is the
 *           destination: nothing is written. -1 too when the destination could not be written whole; it is then
 *           incomplete.
 *  @requires nothing. */
VC_API int32_t VC_CALL vcSteroToMono(const char* source_path, const char* destination_path) VC_NOEXCEPT;

/* ======================================================================================================================
 * wave-editing: sentences cut out of a recording, a stretch of time copied out
 * ==================================================================================================================== */

/** @brief Cuts chosen sentences out of a recording, shifts the starts of the others and writes a new study file.
 *
 *  Sentence i reaches to the start of the next one, the last one to the end of the sound; what lies before the first start
 *  is kept. The recording is replaced only by one that is whole, and the study file is written after that. The bookmark
 *  list is empty afterwards. Digests of the recording are stale.
 *  @param recording_path the recording, at most 199 bytes; a read-only mark on it is taken away.
 *  @param study_path the study file to write.
 *  @param count how many sentences, 1 or more.
 *  @param flags count values; any but 0 cuts its sentence out.
 *  @param starts_ms count starts in milliseconds, never decreasing; receives the new ones, 0xFFFFFFFF for those cut out.
 *  @param progress_bar a progress bar that is sent its range, 0 to 100, and its positions; may be null.
 *  @return 0; also when only the study file could not be written.
 *  @failure -1, with recording, table and study file as they were: a count below 1, decreasing starts, a null array, a
 *           recording that cannot be read, no room or no folder for the new one, or one that cannot take its place
 *           ("tmpwav\tmpdest.wav" then stays).
 *  @requires the folder tmpwav. */
VC_API int32_t VC_CALL vcDeleteSentenceInFile(const char* recording_path, const char* study_path, int32_t count,
                                              const uint32_t* flags, uint32_t* starts_ms,
                                              VcWindow progress_bar) VC_NOEXCEPT;

/** @brief Copies a stretch of a wave file into a new one of the same format.
 *
 *  The copy has the bytes of the duration and 64 more, from file position 64 plus the bytes of the start, as far as there
 *  are any.
 *  @param source_path the wave file, 1 or 2 channels; at most 199 bytes.
 *  @param destination_path the file to write, at most 199 bytes; an existing one is replaced.
 *  @param start_ms the first millisecond.
 *  @param end_ms the last millisecond, included.
 *  @param buffer work space of buffer_bytes; a larger one is faster.
 *  @param buffer_bytes its size, 1 or more.
 *  @return 1, also when there was nothing to copy.
 *  @failure -1, and nothing is written: the source cannot be opened, the destination cannot be created, or both are the
 *           same file.
 *  @requires nothing. */
VC_API int32_t VC_CALL vcExtractWaveSeg(const char* source_path, const char* destination_path, uint32_t start_ms,
                                        uint32_t end_ms, void* buffer, int32_t buffer_bytes) VC_NOEXCEPT;

/* ======================================================================================================================
 * question-compiler: from the author's question script to a question index and a wz file
 *
 * The script of D:\course\unit1.wav is D:\course\unit1.scr, text of records that begin with a line such as ##N1T1; what
 * is compiled lies in temp\unit1.tst (the index) and temp\unit1.wz (the texts). Record i belongs to sentence i of the
 * study file. Messages have no caption.
 * ==================================================================================================================== */

/** @brief Compiles a question script; beeps when it is done.
 *
 *  A message tells the file, the line and what ought to stand there. A text that cannot be written is told by "write
 *  error", once, and compiling goes on.
 *  @param study_path the study file of the recording: as many records as it has sentences are compiled, further ones
 *                    are not looked at. At most 259 bytes, as is script_path.
 *  @param script_path the script; its file name names the outputs.
 *  @return 0.
 *  @failure -1. Without a message, and with the outputs of before as they were: an input that cannot be opened, a
 *           study file of less than 320 bytes, a path that is too long. After a message: an output that cannot be
 *           created or is itself an input; a fault of the script, and the outputs hold what was compiled before it.
 *  @requires the folder temp. */
VC_API int32_t VC_CALL vcConvertScrToTstWz(const char* study_path, const char* script_path) VC_NOEXCEPT;

/* ======================================================================================================================
 * question-bank: the items of a lesson, one per sentence, and what lies beside the lesson
 *
 * Open the index, then the wz file; vcReadCurQuestion takes an item in hand, the text exports give its texts. Types: 0
 * question, 1 long dialogue, 2 passage, 3 passage question. Answers: 0 for A to 25 for Z.
 *
 * A text takes textLength + 1 bytes of the host's buffer, textLength being the field at offset 12 of the item's record; the
 * wz file's length + 1 is always enough. Curly double quotes come as a straight one and a blank, in as many bytes. A
 * record that points outside the wz file has an empty text. No export of this family shows a message, but those of the
 * compiler appear in vcConvertScr.
 * ==================================================================================================================== */

/** @brief Compiles the question script beside a recording and opens the new index.
 *
 *  Script and study file both lie beside the recording, under its name with ".scr" and ".zud"; where the study file lies
 *  in zud, call vcConvertScrToTstWz and vcOpenQuestionIdx.
 *  @param path the recording, or any file of its name; at most 259 bytes.
 *  @param wz_path receives the wz file's path for vcOpenWzFile, "temp\" and the file name with ".wz"; room for the file
 *                 name and 9 bytes.
 *  @param answers receives what vcOpenQuestionIdx gives; one value for each sentence of the study file.
 *  @return the number of records in the index.
 *  @failure -1: script or study file is missing, without a message and with nothing written; or as vcConvertScrToTstWz
 *           and vcOpenQuestionIdx fail, and wz_path is then written.
 *  @requires the folder temp. */
VC_API int32_t VC_CALL vcConvertScr(const char* path, char* wz_path, int32_t* answers) VC_NOEXCEPT;

/** @brief Opens the question index of a bank; one that is open is closed first.
 *  @param path the index or its wz file, 3 to 259 bytes: the ending of two or three bytes becomes "tst" (x.wz and
 *              x.tst both lead to x.tst).
 *  @param answers receives for each record its answer, -1 for a passage or long dialogue; one value for each 52 bytes
 *                 of the index.
 *  @return the number of whole records; with 0 the index is open as well.
 *  @failure -1: it cannot be opened; answers is then not written.
 *  @requires nothing. */
VC_API int32_t VC_CALL vcOpenQuestionIdx(const char* path, int32_t* answers) VC_NOEXCEPT;

/** @brief Closes the question index. Does nothing when none is open.
 *  @failure none.
 *  @requires nothing. */
VC_API void VC_CALL vcCloseQuestionIdx(void) VC_NOEXCEPT;

/** @brief Takes an item in hand.
 *  @param index the item, from 0.
 *  @param answer receives the item's answer; 0 for a compiled passage.
 *  @return the item's type.
 *  @failure an index outside the file, or no index open: the item in hand stays, and its type and answer are given
 *           again.
 *  @requires vcOpenQuestionIdx. */
VC_API int32_t VC_CALL vcReadCurQuestion(int32_t index, int32_t* answer) VC_NOEXCEPT;

/** @brief Gives the question of the item in hand: its text up to the first zero byte.
 *  @param buffer receives the text; room for textLength + 1 bytes. Null: nothing is written and 0 answered.
 *  @return the text's length in characters.
 *  @failure 0 and an empty text.
 *  @requires vcReadCurQuestion, vcOpenWzFile. */
VC_API int32_t VC_CALL vcGetQuestionTxt(char* buffer) VC_NOEXCEPT;

/** @brief Gives the choices of the item in hand: its text behind the first zero byte.
 *  @param buffer receives the text, empty when there is no zero byte; room for textLength + 1 bytes. Null as above.
 *  @return the text's length in characters.
 *  @failure 0 and an empty text.
 *  @requires vcReadCurQuestion, vcOpenWzFile. */
VC_API int32_t VC_CALL vcGetChoiceTxt(char* buffer) VC_NOEXCEPT;

/** @brief Gives the text of a passage or long dialogue; the item in hand stays.
 *  @param buffer receives the text; room for textLength + 1 bytes of the passage's record. Null as above.
 *  @param index the item, from 0: the passage itself, or a question of it.
 *  @return the text's length in characters.
 *  @failure 0 and an empty text: no such item, or a question without a passage.
 *  @requires vcOpenQuestionIdx, vcOpenWzFile. */
VC_API int32_t VC_CALL vcGetArticleTxt(char* buffer, int32_t index) VC_NOEXCEPT;

/** @brief Adds a line to a list box for every item (LB_ADDSTRING, 0x180), in the order of the sentences: "No.1" for a
 *         question, "  长对话" for a long dialogue, "  短文" for a passage. The list box is not emptied first.
 *  @param list_box the list box.
 *  @failure an item of an unknown type has no line.
 *  @requires vcOpenQuestionIdx. */
VC_API void VC_CALL vcFillSentenceList(VcWindow list_box) VC_NOEXCEPT;

/** @brief Opens the wz file of a bank; one that is open is closed first.
 *  @param path the wz file or its index, 3 to 259 bytes: the ending of two or three bytes becomes "wz", in place, also
 *              when the file cannot be opened (x.tst becomes x.wz).
 *  @return 0.
 *  @failure -1: it cannot be opened. A shorter or longer path is left as it is.
 *  @requires nothing. */
VC_API int32_t VC_CALL vcOpenWzFile(char* path) VC_NOEXCEPT;

/** @brief Closes the wz file. Does nothing when none is open.
 *  @failure none.
 *  @requires nothing. */
VC_API void VC_CALL vcCloseWzFile(void) VC_NOEXCEPT;

/** @brief Finds the picture of a lesson: the file of its name with ".jpg", ".bmp", ".gif" or ".dib", the first that
 *         exists.
 *  @param path any file of the lesson; at most 255 bytes.
 *  @param found_path receives the picture's path, and without a picture the path with ".dib"; room for the path and 5
 *                    bytes. It may be path itself.
 *  @return 1 when there is a picture, else 0.
 *  @failure 0; for an empty or longer path found_path is then empty.
 *  @requires nothing. */
VC_API int32_t VC_CALL vcIfTxtGraphExist(const char* path, char* found_path) VC_NOEXCEPT;

/** @brief Finds the text file of a lesson: the file of its name with ".wz", ".txt" or ".rtf", the first that exists.
 *  @param path any file of the lesson, or its name without an extension; at most 255 bytes.
 *  @param found_path receives the file's path, and without one the path with ".rtf"; room for the path and 5 bytes. It
 *                    may be path itself.
 *  @return the found path's length in characters.
 *  @failure 0: there is none; for an empty or longer path found_path is then empty.
 *  @requires nothing. */
VC_API int32_t VC_CALL vcGetWzFile(const char* path, char* found_path) VC_NOEXCEPT;

/** @brief Gives the title of a passage from the profile article.txt.
 *
 *  The profile lies in the current directory, or else where the platform keeps profiles: in the Windows folder; on Linux
 *  in the folder tavimo of the user's settings (XDG_CONFIG_HOME, or .config at home).
 *  @param section the section of the profile.
 *  @param number the key, in decimal.
 *  @param title receives the title, "文章" when there is none; room for 150 bytes. Longer ones are cut behind a
 *               character. Null: nothing is written and 0 answered.
 *  @return the title's length in characters.
 *  @failure none.
 *  @requires nothing. */
VC_API int32_t VC_CALL vcGetArticleTitle(const char* section, int32_t number, char* title) VC_NOEXCEPT;

/* ======================================================================================================================
 * page-layout: a script's text broken into pages, lines and words for a font and a rectangle
 *
 * Lines break at spaces in English and between any two characters in Chinese; a line beginning with "@@" begins a
 * paragraph, and "@@" is measured and shown as two blanks. A word is a run of letters and digits. Lines end with CR and LF.
 * The order of calls: vcSetPageSettings; vcGenPageFile when the page file is missing or its file time is not the script's;
 * vcOpenScript; then for each page vcReadPage, vcCountPage and, on every repaint, vcDisplayPage; vcCloseScript.
 * ==================================================================================================================== */

/** @brief Sets the rectangle that scripts are laid out in, for the font selected in a device context.
 *
 *  The settings hold until the next call. A page has at most 60 lines.
 *  @param dc the device context of the text pane with its font.
 *  @param width, height the rectangle's size in pixels. A page too narrow for the text or lower than a line has no lines.
 *  @param left, top the pixel position of the first line's upper left corner.
 *  @param spacing the distance of lines: 1 for 1.2 times the text's height, 2 for 1.5 times; any other value is single.
 *  @return the distance of lines in pixels.
 *  @failure 0, and the earlier settings stay: no font, or one without height.
 *  @requires nothing; again whenever font or rectangle change, and then vcGenPageFile. */
VC_API int32_t VC_CALL vcSetPageSettings(VcDc dc, int32_t width, int32_t height, int32_t left, int32_t top,
                                         int32_t spacing) VC_NOEXCEPT;

/** @brief Finds the pages of a whole script and writes them to a page file, which is given the script's file time.
 *
 *  A page has at most 4988 bytes: one that would have more is the last, and the text behind it belongs to no page. The same
 *  holds behind a zero byte, and from the page on that is too small for a single character.
 *  @param scrambled any but 0 for a scrambled script.
 *  @param script_path the script, less than 4 GB.
 *  @param page_file_path the page file to write; an existing one is replaced.
 *  @param dc the device context with the font of vcSetPageSettings.
 *  @return -2.
 *  @failure -1, and an existing page file stays: the script cannot be opened or read, the page file cannot be written or
 *           is the script, or there is no font.
 *  @requires vcSetPageSettings. Read the current page again afterwards (vcReadPage). */
VC_API int32_t VC_CALL vcGenPageFile(int32_t scrambled, const char* script_path, const char* page_file_path,
                                     VcDc dc) VC_NOEXCEPT;

/** @brief Lays out the page that was read last into lines and words, for vcDisplayPage and vcBeginSelect.
 *
 *  Before any page was read, the page is empty.
 *  @param dc the device context with the font of vcSetPageSettings.
 *  @return the page's lines, 0 to 60.
 *  @failure 0, and no page is laid out: there is no font.
 *  @requires vcSetPageSettings, vcReadPage. */
VC_API int32_t VC_CALL vcCountPage(VcDc dc) VC_NOEXCEPT;

/* ======================================================================================================================
 * page-display: a script opened with its page file and the learner's marks, read and drawn page by page
 * ==================================================================================================================== */

/** One entry of a page file. Page k reaches from entry k to entry k + 1. */
typedef struct VcPageIndexEntry {
  uint32_t text_offset; /**< where the page begins, in bytes from the start of the script */
  uint32_t first_word;  /**< the number of its first word, counted from 0 through the whole script */
} VcPageIndexEntry;

/** @brief Opens a script with its page file and its highlight file, which keeps the learner's marks.
 *
 *  A highlight file that is missing, or whose file time is not the script's, is made anew without marks; then a script
 *  whose extension is ".nor" counts as scrambled. A read-only mark on it is taken away. A script that is open is closed
 *  first; no page is current until vcReadPage, and the layout of the last one is gone. Marks that were being saved when a
 *  program was killed are kept: a note beside the highlight file, named as it is with "~", tells of them. The name is
 *  reserved: a file of up to 8 bytes under it is removed, a longer one is left alone.
 *  @param script_path the script.
 *  @param page_file_path its page file, as vcGenPageFile wrote it. Whether it is current is the host's business.
 *  @param highlight_path the highlight file; neither it nor its note is the script or the page file.
 *  @param slots receives the number of words that the highlight file has room for, 4 for each byte.
 *  @return the number of pages.
 *  @failure -1: one of the three files cannot be opened, or the page file is empty. Call vcCloseScript then too.
 *  @requires nothing. */
VC_API int32_t VC_CALL vcOpenScript(const char* script_path, const char* page_file_path, const char* highlight_path,
                                    int32_t* slots) VC_NOEXCEPT;

/** @brief Closes the script, its page file and its highlight file. The current page can still be drawn.
 *  @failure none; nothing happens when nothing is open.
 *  @requires nothing. */
VC_API void VC_CALL vcCloseScript(void) VC_NOEXCEPT;

/** @brief Reads the page file from its start.
 *  @param count how many entries; all of them are the number of pages + 1.
 *  @param entries receives them; room for count entries.
 *  @return how many were read, fewer than count at the end of the file.
 *  @failure -1: no script is open.
 *  @requires vcOpenScript. */
VC_API int32_t VC_CALL vcReadBookPageIdx(int32_t count, VcPageIndexEntry* entries) VC_NOEXCEPT;

/** @brief Reads a page and the marks of its words. It is laid out only by vcCountPage; until then there is no layout, and
 *         vcDisplayPage draws nothing.
 *  @param scrambled any but 0 for a scrambled script.
 *  @param page the page's number, from 0.
 *  @return the number of the page's first word.
 *  @failure -1, and the current page stays: no script is open, there is no such page, or its entries in the page file
 *           cannot be right (they decrease, or hold more than 4988 bytes).
 *  @requires vcOpenScript. */
VC_API int32_t VC_CALL vcReadPage(int32_t scrambled, int32_t page) VC_NOEXCEPT;

/** @brief Draws the page that was laid out last, with the selected font and text colour, and its marked words in pure red
 *         over them. The background stays as it is.
 *  @param dc the device context to draw into.
 *  @return the page's lines.
 *  @failure 0, and nothing is drawn: no page is laid out.
 *  @requires vcCountPage. */
VC_API int32_t VC_CALL vcDisplayPage(VcDc dc) VC_NOEXCEPT;

/* ======================================================================================================================
 * word-selection: words marked by clicks
 * ==================================================================================================================== */

/** @brief Marks the word under a click, or takes its mark away, draws its line again and saves the marks at once.
 *
 *  A click counts over letters and hyphens, and right of a line's text; it selects the last word of the line that begins at
 *  or left of it. Of a word that a line's end cuts, the part on the line is the word.
 *  @param dc the device context of the text pane, with the font of vcCountPage.
 *  @param x, y the click in pixels, in the coordinates of vcSetPageSettings.
 *  @param state receives 1 if the word is marked now, else 0.
 *  @param word receives the word, of which at most 160 bytes; room for 161 bytes.
 *  @return the word's length in bytes; 0 when the click selects nothing, and then nothing changes.
 *  @failure 0, and nothing changes: the mark cannot be saved, or no script is open.
 *  @requires vcReadPage, vcCountPage, vcDisplayPage. */
VC_API int32_t VC_CALL vcBeginSelect(VcDc dc, int32_t x, int32_t y, int32_t* state, char* word) VC_NOEXCEPT;

/* ======================================================================================================================
 * host-utilities: services around the engine
 * ==================================================================================================================== */

/** @brief Tells whether a host program may start beside those that run; shows a message when it may not.
 *
 *  Programs are found by the titles of their windows: "kelvo-player", "kelvo-recorder", "Tavimo-复习机". The recorder
 *  runs neither beside the player nor beside the reviewer.
 *  @param program 0 player, 1 recorder, any other value reviewer.
 *  @return 1 if it may run, else 0 after the message.
 *  @failure none.
 *  @requires nothing. */
VC_API int32_t VC_CALL vcCanRun(int32_t program) VC_NOEXCEPT;

/** @brief Finds the first CD-ROM drive that holds a path.
 *  @param relative_path the path below the drive's root, at most 36 bytes.
 *  @return the drive's index, 0 for A: to 25 for Z:.
 *  @failure -1: none; also for a null or longer path.
 *  @requires nothing. */
VC_API int32_t VC_CALL vcGetCdRomDrive(const char* relative_path) VC_NOEXCEPT;

/** @brief Copies the files that match a pattern from one folder to another, replacing those that exist.
 *  @param to_folder the destination, ending in a backslash.
 *  @param pattern a file name with "*" and "?".
 *  @param from_folder the source, ending in a backslash.
 *  @return 1 after the copies, whether each of them succeeded or not.
 *  @failure -1: nothing matches. A file that cannot be copied, or whose path would be 260 bytes or longer, is passed
 *           over.
 *  @requires nothing. */
VC_API int32_t VC_CALL vcStrongCopyFile(const char* to_folder, const char* pattern,
                                        const char* from_folder) VC_NOEXCEPT;

/** @brief Compares two strings byte by byte, ignoring the case of ASCII letters. GBK sorts behind ASCII.
 *  @param left, right the strings; null counts as the empty string.
 *  @return negative, 0 or positive.
 *  @failure none.
 *  @requires nothing. */
VC_API int32_t VC_CALL vcStrcmp(const char* left, const char* right) VC_NOEXCEPT;

/** @brief Deletes a file.
 *  @param path the file.
 *  @return 0.
 *  @failure -1: it does not exist, is read-only, or is a folder.
 *  @requires nothing. */
VC_API int32_t VC_CALL vcDeleteFile(const char* path) VC_NOEXCEPT;

/** @brief The same entry as vcDeleteFile under a second name.
 *  @param path the file.
 *  @return 0.
 *  @failure -1: it does not exist, is read-only, or is a folder.
 *  @requires nothing. */
VC_API int32_t VC_CALL vcDeleteTmpRecordFile(const char* path) VC_NOEXCEPT;

/** @brief Finds the last backslash of a path, counted in characters.
 *
 *  The search goes by bytes, so a backslash that is the second byte of a character counts; the first byte of the path
 *  is not looked at.
 *  @param path the path.
 *  @return the number of characters up to and including the backslash (C:\lesson\a.wav gives 10).
 *  @failure -1: there is none.
 *  @requires nothing. */
VC_API int32_t VC_CALL vcFindLastSlash(const char* path) VC_NOEXCEPT;

/** @brief Hands over the path of the file dropped last.
 *  @param path receives the path; room for 298 bytes. Empty before any drop.
 *  @return the path's length in characters; 0 before any drop.
 *  @failure none.
 *  @requires vcSetPlayFormWndProc. */
VC_API int32_t VC_CALL vcGetDragFile(char* path) VC_NOEXCEPT;

#if defined(__cplusplus)
}
#endif

#endif
