/* A program that creates its first object, and ends. */
#include "veltgeneral/veltgeneral_c.h"

int main(void) {
  vg_object* object = NULL;
  const vg_status failed = vg_create("FileUtility", &object, NULL);
  vg_object_release(object);
  return failed != 0;
}
