// A temporary file of interleaved stereo floats beside the output: the first
// pass of --normalize writes the render there, the second reads it back, so
// that memory does not grow with the length of the render.
#pragma once

#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

namespace sablevox::render {

class SampleSpool {
 public:
  SampleSpool() = default;
  ~SampleSpool();  // closes and removes the file
  SampleSpool(const SampleSpool&) = delete;
  SampleSpool& operator=(const SampleSpool&) = delete;

  // Creates `near`.spoolPID. False with a message on failure.
  bool open(const std::string& near, std::string& error);
  bool write(const float* left, const float* right, int64_t frames, std::string& error);
  // Rewinds for reading; read() then answers the frames it gave (0 at the end).
  bool rewind(std::string& error);
  int64_t read(std::vector<float>& left, std::vector<float>& right, int64_t frames);

 private:
  std::string path_;
  std::FILE* file_ = nullptr;
  std::vector<float> interleaved_;
};

}  // namespace sablevox::render
