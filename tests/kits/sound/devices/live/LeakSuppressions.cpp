// What the device library leaves behind each time it lists PulseAudio's devices is not ours to free.
extern "C" const char* __lsan_default_suppressions();
extern "C" const char* __lsan_default_suppressions() {
  return "leak:libpulse.so";
}
