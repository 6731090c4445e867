// What the sanitizers are told, in every test program.

// Freed memory is kept for a while, to catch who still uses it; less than the tests of flat memory
// allow.
extern "C" __attribute__((visibility("default"))) const char*
__asan_default_options() {  // NOLINT(bugprone-reserved-identifier)
  return "quarantine_size_mb=32";
}

extern "C" __attribute__((visibility("default"))) const char*
__ubsan_default_options() {  // NOLINT(bugprone-reserved-identifier)
  return "print_stacktrace=1";
}

// Libraries that were not built with the sanitizer: their own locks and counts go unseen.
extern "C" __attribute__((visibility("default"))) const char*
__tsan_default_suppressions() {  // NOLINT(bugprone-reserved-identifier)
  return "race:libcairo.so\n"
         "race:libfontconfig.so\n"
         "race:libglib-2.0.so\n"
         "race:libharfbuzz.so\n"
         "race:libpangoft2-1.0.so\n"
         "race:tzset_internal\n";
}

// Losses that are not ours, each of a fixed amount. Any test may load the drawing modules or a
// compiled locale.
extern "C" __attribute__((visibility("default"))) const char*
__lsan_default_suppressions() {  // NOLINT(bugprone-reserved-identifier)
  return
      // Ties the parts of a pattern by offsets, which the detector does not follow: what it keeps
      // for the process looks lost.
      "leak:libfontconfig\n"
      // The C library forgets its copy of LOCPATH whenever it looks for a locale there.
      "leak:argz_add_sep\n";
}
