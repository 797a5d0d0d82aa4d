// The font library keeps what it has looked up until the end of the program.
extern "C" const char* __lsan_default_suppressions();

extern "C" const char* __lsan_default_suppressions() {
  return "leak:libfontconfig.so";
}
