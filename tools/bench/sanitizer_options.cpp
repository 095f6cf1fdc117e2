// amsynth leaks a few objects of its own at load; the leak checker of a
// sanitizer build is told so, and still reports every other leak.
extern "C" __attribute__((visibility("default"), used)) const char* __lsan_default_suppressions() {
  return "leak:amsynth_vst.so\n";
}
