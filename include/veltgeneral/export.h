// Marks what the shared library publishes; everything else stays hidden in it.
#pragma once

#if defined(_WIN32)
#define VELTGENERAL_API
#else
#define VELTGENERAL_API __attribute__((visibility("default")))
#endif
