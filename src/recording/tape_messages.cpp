#include "recording/tape_messages.h"

#include "platform/gbk_literal.h"

namespace tavimo::recording {

using namespace platform::literals;

const char* TapeMessage(TapeFault fault) noexcept {
  switch (fault) {
    case TapeFault::None:
      return nullptr;
    case TapeFault::CannotCreate:
      return u8"无法创建临时磁带文件。ErrorNo 19"_gbk;
    case TapeFault::CannotCreateRiff:
      return u8"无法创建临时磁带文件。 ErrorNo 28"_gbk;
    case TapeFault::CannotCreateFormat:
      return u8"无法创建临时磁带文件。 ErrorNo 29"_gbk;
    case TapeFault::CannotWriteFormat:
      return u8"无法创建临时磁带文件。 ErrorNo 30"_gbk;
    case TapeFault::CannotLeaveFormat:
      return u8"无法创建临时磁带文件。 ErrorNo 31"_gbk;
    case TapeFault::CannotCreateData:
      return u8"无法创建临时磁带文件。 ErrorNo 32"_gbk;
    case TapeFault::CannotRead:
      return u8"文件打不开。 ErrorNo 18"_gbk;
    case TapeFault::CannotWrite:
      return u8"无法以添加方式打开该文件。该文件可能是只读文件。 ErrorNo 20"_gbk;
    case TapeFault::NoFirstChunk:
      return u8"文件读错误 。ErrorNo 21.1"_gbk;
    case TapeFault::NotWave:
      return u8"不是wave声音文件,无法播放。 ErrorNo 22"_gbk;
    case TapeFault::NoFormatChunk:
      return u8"无效的wave声音文件,无法播放。 ErrorNo 23"_gbk;
    case TapeFault::ShortFormatChunk:
      return u8"无效的wave声音文件,无法播放。 ErrorNo 24"_gbk;
    case TapeFault::FormatUnreadable:
      return u8"无效的wave声音文件,无法播放。ErrorNo 25"_gbk;
    case TapeFault::FormatNotLeft:
      return u8"无效的wave声音文件,无法播放。ErrorNo 26"_gbk;
    case TapeFault::NotPcm:
      return u8"无效的wave声音文件,无法播放。ErrorNo 25"_gbk;
    case TapeFault::NoDataChunk:
      return u8"无效的wave声音文件,无法播放。 ErrorNo 27"_gbk;
  }
  return nullptr;
}

}  // namespace tavimo::recording
