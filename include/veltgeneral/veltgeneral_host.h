/* For hosts that link nothing of VeltGeneral: finds the library, opens it, and makes objects by the
 * names of their classes. Plain C11 with POSIX's dynamic loader; header only.
 *
 *   void* library = vg_host_open("VeltGeneral.FileUtility");
 *   const vg_factory* factory = vg_host_factory(library, "VeltGeneral.FileUtility");
 *   factory->create(factory, &object, NULL);
 *
 * The library is the file that VELTGENERAL_LIBRARY names, else the one registered for the class,
 * else the one that the system's loader finds. Its other functions are reached with dlsym, by the
 * names and types in veltgeneral_c.h. Before dlclose, DllCanUnloadNow() says whether objects live.
 */
#ifndef VELTGENERAL_VELTGENERAL_HOST_H
#define VELTGENERAL_VELTGENERAL_HOST_H

#include <dlfcn.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <strings.h>

#include "veltgeneral/veltgeneral_c.h"

/* One line of a registry file without its line end, in ASCII or UTF-8; 0 at the end of the file. A
 * file in UTF-16 reads as well, as far as its characters are ASCII. */
static inline int vg_host_line(FILE* file, char* line, size_t capacity) {
  size_t length = 0;
  int c = getc(file);
  if (c == EOF) return 0;
  for (; c != EOF && c != '\n'; c = getc(file)) {
    if (c != 0 && c != '\r' && length + 1 < capacity) line[length++] = (char)c;
  }
  line[length] = 0;
  return 1;
}

/* Copies the registered library's path for a class, with or without the prefix "VeltGeneral.", into
 * `path`. 1, or 0 where there is none or it does not fit. */
static inline int vg_host_registered_path(const char* class_name, char* path, size_t capacity) {
  static const char prefix[] = "VeltGeneral.";
  const char* folder = getenv("VELTGENERAL_REGISTRY_DIR");
  char name[4096], key[512], line[4096] = {0};
  if (strncasecmp(class_name, prefix, sizeof prefix - 1) == 0) class_name += sizeof prefix - 1;
  snprintf(name, sizeof name, "%s/machine.reg", folder != NULL ? folder : "/etc/veltgeneral");
  snprintf(key, sizeof key, "[HKEY_LOCAL_MACHINE\\SOFTWARE\\Classes\\%s%s\\InprocServer32]", prefix,
           class_name);
  FILE* file = fopen(name, "rb");
  if (file == NULL) return 0;
  int inside = 0;
  int found = 0;
  while (!found && vg_host_line(file, line, sizeof line)) {
    if (line[0] == '[') {
      inside = strcasecmp(line, key) == 0;
    } else if (inside && strncmp(line, "@=\"", 3) == 0) {
      size_t length = 0;
      const char* from = line + 3;
      for (; *from != 0 && *from != '"' && length + 1 < capacity; ++from) {
        if (*from == '\\' && from[1] != 0) ++from;
        path[length++] = *from;
      }
      path[length] = 0;
      found = *from == '"';
    }
  }
  fclose(file);
  return found;
}

/* The open library, to be closed with dlclose; NULL where it cannot be loaded, dlerror() then says
 * why. */
static inline void* vg_host_open(const char* class_name) {
  char path[4096];
  const char* named = getenv("VELTGENERAL_LIBRARY");
  if (named != NULL) return dlopen(named, RTLD_NOW | RTLD_LOCAL);
  if (vg_host_registered_path(class_name, path, sizeof path)) {
    void* library = dlopen(path, RTLD_NOW | RTLD_LOCAL);
    if (library != NULL) return library;
  }
  return dlopen("libveltgeneral.so.1", RTLD_NOW | RTLD_LOCAL);
}

/* The factory of a class; NULL where the library has no such class. */
static inline const vg_factory* vg_host_factory(void* library, const char* class_name) {
  const vg_factory* factory = NULL;
  vg_status (*get)(const char*, const vg_factory**) = NULL;
  void* symbol = dlsym(library, "DllGetClassObject");
  memcpy(&get, &symbol, sizeof get); /* C has no cast between the two */
  return get != NULL && get(class_name, &factory) == 0 ? factory : NULL;
}

#endif
