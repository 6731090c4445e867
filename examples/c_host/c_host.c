/* A host that links nothing of VeltGeneral: it opens the library by a class's name, makes an
 * object, calls a member by name and prints the answer.
 *
 *   c_host [DATE]      DATE as YYYYMMDD; is it a date?
 */
#include <stdio.h>
#include <string.h>

#include "veltgeneral/veltgeneral_host.h"

/* The functions of the interface that this host needs. */
typedef struct Interface {
  vg_value* (*value_new)(void);
  void (*value_free)(vg_value*);
  vg_status (*set_utf8)(vg_value*, const char*, size_t);
  vg_status (*get_boolean)(const vg_value*, int32_t*);
  vg_status (*call)(vg_object*, const char*, vg_call_kind, vg_value* const*, size_t, vg_value*,
                    vg_error**);
  const char* (*description)(const vg_error*);
  void (*error_free)(vg_error*);
  void (*release)(vg_object*);
  vg_status (*can_unload)(void);
} Interface;

static int bind(void* library, const char* name, void* function) {
  void* symbol = dlsym(library, name);
  memcpy(function, &symbol, sizeof symbol);
  return symbol != NULL;
}

static int bind_all(void* library, Interface* vg) {
  return bind(library, "vg_value_new", &vg->value_new) &&
         bind(library, "vg_value_free", &vg->value_free) &&
         bind(library, "vg_value_set_utf8", &vg->set_utf8) &&
         bind(library, "vg_value_get_boolean", &vg->get_boolean) &&
         bind(library, "vg_call", &vg->call) &&
         bind(library, "vg_error_description", &vg->description) &&
         bind(library, "vg_error_free", &vg->error_free) &&
         bind(library, "vg_object_release", &vg->release) &&
         bind(library, "DllCanUnloadNow", &vg->can_unload);
}

static int ask(const Interface* vg, vg_object* funzioni, const char* text) {
  vg_value* date = vg->value_new();
  vg_value* result = vg->value_new();
  vg_error* error = NULL;
  int32_t truth = 0;
  vg->set_utf8(date, text, VG_TO_NUL);
  const vg_status status =
      vg->call(funzioni, "isDateYYYYMMDD", VG_METHOD, &date, 1, result, &error);
  if (status == 0 && vg->get_boolean(result, &truth) == 0) {
    printf("%s %s a date\n", text, truth ? "is" : "is not");
  } else {
    fprintf(stderr, "error %d: %s\n", (int)status, vg->description(error));
    vg->error_free(error);
  }
  vg->value_free(date);
  vg->value_free(result);
  return status == 0 ? 0 : 1;
}

int main(int count, char** arguments) {
  static const char name[] = "VeltGeneral.Funzioni";
  Interface vg;
  vg_object* funzioni = NULL;
  void* library = vg_host_open(name);
  if (library == NULL) {
    fprintf(stderr, "the library was not found: %s\n", dlerror());
    return 2;
  }
  const vg_factory* factory = vg_host_factory(library, name);
  if (factory == NULL || !bind_all(library, &vg) ||
      factory->create(factory, &funzioni, NULL) != 0) {
    fprintf(stderr, "%s cannot be made\n", name);
    return 2;
  }
  const int failed = ask(&vg, funzioni, count > 1 ? arguments[1] : "20240229");
  vg.release(funzioni);
  if (vg.can_unload() == 0) dlclose(library);
  return failed;
}
