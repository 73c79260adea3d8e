#include "exercises/output_file.h"

#include <cstring>

namespace tavimo::exercises {

bool OutputFile::Create(const char* path) noexcept {
  file_ = platform::FileStream::Open(path, platform::OpenMode::Create);
  return file_.IsOpen();
}

void OutputFile::Add(std::string_view bytes) noexcept {
  if (bytes.size() > piece_.size() - pieceBytes_) WritePiece();
  std::memcpy(piece_.data() + pieceBytes_, bytes.data(), bytes.size());
  pieceBytes_ += bytes.size();
}

bool OutputFile::Finish() noexcept {
  if (file_.IsOpen()) WritePiece();
  if (!file_.Close()) isWhole_ = false;
  return isWhole_;
}

void OutputFile::WritePiece() noexcept {
  end_ += static_cast<std::int64_t>(pieceBytes_);
  if (!file_.Write(piece_.data(), static_cast<std::int64_t>(pieceBytes_))) {
    isWhole_ = false;
    file_.Seek(end_, platform::SeekFrom::Start);  // what follows still lands where the index says
  }
  pieceBytes_ = 0;
}

}  // namespace tavimo::exercises
