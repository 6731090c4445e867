// A destination of the print system: a queue of its scheduler, or a printer that speaks IPP.
#pragma once

#include <cups/cups.h>

#include <string>

#include "drawing/handles.h"

namespace veltgeneral::platform {

struct FreeDestination {
  void operator()(cups_dest_t* destination) const noexcept { cupsFreeDests(1, destination); }
};

class PrintQueue {
 public:
  // `name`: a queue's name, an "ipp://" or "ipps://" address, or nothing for the default queue.
  // Throws Failure 482 where the print system knows no such queue or does not answer.
  explicit PrintQueue(const std::string& name);

  // Sends the PDF `file` as one A4 job. Throws Failure 482 where it was not taken; no part of it
  // is then printed.
  void print(const std::string& file, const std::string& title) const;

 private:
  std::unique_ptr<cups_dest_t, FreeDestination> destination_;
  bool direct_ = false;  // no scheduler in between
};

}  // namespace veltgeneral::platform
