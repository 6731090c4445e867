// Fontconfig ties the parts of a pattern by offsets, which a leak detector does not follow: what it
// keeps for the process looks lost.
extern "C" __attribute__((visibility("default"))) const char*
__lsan_default_suppressions() {  // NOLINT(bugprone-reserved-identifier)
  return "leak:libfontconfig";
}
