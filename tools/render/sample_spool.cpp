// The spool file of the two-pass normalisation.
#include "render/sample_spool.h"

#include <unistd.h>

namespace sablevox::render {

SampleSpool::~SampleSpool() {
  if (file_ != nullptr) std::fclose(file_);
  if (!path_.empty()) std::remove(path_.c_str());
}

bool SampleSpool::open(const std::string& near, std::string& error) {
  path_ = near + ".spool" + std::to_string(getpid());
  file_ = std::fopen(path_.c_str(), "w+b");
  if (file_ == nullptr) {
    path_.clear();
    error = "cannot write a temporary file beside " + near;
    return false;
  }
  return true;
}

bool SampleSpool::write(const float* left, const float* right, int64_t frames, std::string& error) {
  interleaved_.resize(static_cast<size_t>(frames) * 2);
  for (int64_t i = 0; i < frames; ++i) {
    interleaved_[static_cast<size_t>(2 * i)] = left[i];
    interleaved_[static_cast<size_t>(2 * i + 1)] = right[i];
  }
  if (std::fwrite(interleaved_.data(), sizeof(float), interleaved_.size(), file_) !=
      interleaved_.size()) {
    error = "cannot write the temporary file " + path_ + " (disk full?)";
    return false;
  }
  return true;
}

bool SampleSpool::rewind(std::string& error) {
  if (std::fflush(file_) != 0 || std::fseek(file_, 0, SEEK_SET) != 0) {
    error = "cannot read back the temporary file " + path_;
    return false;
  }
  return true;
}

int64_t SampleSpool::read(std::vector<float>& left, std::vector<float>& right, int64_t frames) {
  interleaved_.resize(static_cast<size_t>(frames) * 2);
  const size_t got =
      std::fread(interleaved_.data(), 2 * sizeof(float), static_cast<size_t>(frames), file_);
  left.resize(got);
  right.resize(got);
  for (size_t i = 0; i < got; ++i) {
    left[i] = interleaved_[2 * i];
    right[i] = interleaved_[2 * i + 1];
  }
  return static_cast<int64_t>(got);
}

}  // namespace sablevox::render
