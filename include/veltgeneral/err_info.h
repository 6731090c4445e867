// ErrInfo: what an operation says of itself when it is done.
//
// A plain value: copied freely, returned by value, owned by whoever holds it. Success is number 0
// and nothing else; every failure code of the library's own has the top bit set and so is negative.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "veltgeneral/export.h"
#include "veltgeneral/text.h"
#include "veltgeneral/variant.h"

namespace veltgeneral {

// Numbers of results that all classes share; the enumerators keep their published spelling. The
// library itself answers with success, with ABORTED for an operation that could not be done, and
// with REGISTRYERROR; the other two are for callers. Any positive number is a run-time error's.
enum errInfoCostant : std::int32_t {
  eiSUCCESFULL = 0,
  eiABORTED = -2147220904,        // 0x80040258
  eiNORECORD = -2147220903,       // 0x80040259
  eiNOVALIDVALUE = -2147220902,   // 0x8004025A
  eiREGISTRYERROR = -2147220901,  // 0x8004025B
};

// The severity of a result, which decides whether the log takes it. A result as newly created has
// 0.
enum typeInfoCostant : std::int32_t {
  eiERRORTYPE = 1,
  eiWARNINGTYPE = 2,
  eiINFORMATIONTYPE = 3,
  eiDEBUGTYPE = 4,
};

// Numbers of results that one class owns; published for callers, none is ever an answer.
enum gcmFileUtility : std::int32_t { gcmfileutilityFILENOTFOUND = -2147220804 };  // 0x800402BC
// As gcmFileUtility, for RegistryUtility.
enum gcmRegistryUtylity : std::int32_t {
  gcmregistryutilityKEYNOTFOUND = -2147220604  // 0x80040384
};
// As gcmFileUtility, for Funzioni.
enum gcmFunzioni : std::int32_t { gcmfunzioniDATEINVALID = -2147220704 };  // 0x80040320

// What ErrInfoNew reads; a field left empty says nothing.
struct structError {
  Variant vntNumberInfo{};
  Variant vntDescriptionInfo{};
  Variant vntTypeInfo{};
  Variant vntLocationInfo{};
  Variant vntProcessInfo{};
  Variant vntClassInfo{};
  Variant vntStepInfo{};
};

class VELTGENERAL_API ErrInfo {
 public:
  // Every number 0, every text empty: a success that says nothing.
  ErrInfo() = default;
  // As `fill`.
  ErrInfo(std::int32_t lNumberInfo, TextView sDescriptionInfo, typeInfoCostant iTypeInfo,
          TextView sLocationInfo, const Variant& vntClassInfo = Missing{},
          const Variant& vntProcessInfo = Missing{}, const Variant& vntStepInfo = Missing{});

  // Overwrites every field; an optional text that is absent becomes empty. `iTypeInfo` keeps its
  // low 16 bits. Returns 0. Late-bound callers know this member as `ErrInfo`.
  std::int16_t fill(std::int32_t lNumberInfo, TextView sDescriptionInfo, typeInfoCostant iTypeInfo,
                    TextView sLocationInfo, const Variant& vntClassInfo = Missing{},
                    const Variant& vntProcessInfo = Missing{},
                    const Variant& vntStepInfo = Missing{});

  // Overwrites, in the record's order, the fields that the record fills: neither empty, nor null,
  // nor only blanks. Returns 0. A number or severity that is not numeric, or does not fit, is
  // RuntimeError 6: the fields before it have changed, the later ones have not.
  std::int16_t ErrInfoNew(structError& structErrInfo);

  // `name="value" ` for each field that says something, in the record's order. Values are trimmed
  // and not escaped. Strictly positive numbers only, so a failure code is never written.
  Text getAttrEqualValue() const;

  // Puts an exact copy, settings of the log excepted, into `oObject`. Never fails; returns a
  // cleared result.
  ErrInfo clone(ErrInfo& oObject) const;

  // Copies the fields into the arguments. Optional ones that are left out are not filled. Returns
  // 0.
  std::int16_t getInfo(std::int32_t& lNumberInfo, Text& sDescriptionInfo, std::int16_t& iTypeInfo,
                       Text& sLocationInfo, Variant* vntClassInfo = nullptr,
                       Variant* vntProcessInfo = nullptr, Variant* vntStepInfo = nullptr) const;

  // Loads the log's settings from the registry; what is missing or no number has its default.
  void runInitialize();

  // 0 for success; else a number of errInfoCostant or of a run-time error.
  std::int32_t numberInfo() const noexcept { return numberInfo_; }
  // The message, for people.
  const Text& descriptionInfo() const noexcept { return descriptionInfo_; }
  // The severity, of typeInfoCostant.
  std::int16_t typeInfo() const noexcept { return typeInfo_; }
  // The member that produced the result, as "readFile".
  const Text& locationInfo() const noexcept { return origin().location; }
  // The name under which the library was built, where the member says it.
  const Text& processInfo() const noexcept { return origin().process; }
  // The class that produced the result, as "FileUtility".
  const Text& classInfo() const noexcept { return origin().className; }

  // The log's settings as the registry has them: the folder of the common log file (the library's
  // own where none is set or it is not there), always ending in "\"; the trace level, by default
  // 1; the length in bytes beyond which a file is rotated, by default 1024000. Always true.
  bool getInfoForLogSystem(Text& sLogPath, std::int16_t& iTrace, std::int32_t& lByteSwitch);

  // The step inside the member, a text; empty where the member has none.
  Variant stepInfo() const { return origin().step; }

  // Number 0, texts empty, severity eiDEBUGTYPE: not quite the state of a new object, whose
  // severity is 0.
  void clear();

  // Whether the number is 0, whatever the severity.
  bool isSuccess() const noexcept { return numberInfo_ == 0; }

  // Appends the result as one line to `sErrLogName` (a full path), and to the common log file where
  // it is an error or a warning, as far as the trace level admits its severity (1 error, 2 warning,
  // 3 information, 4 debug; 0 any other). A file longer than the limit becomes ".old" first; after
  // a file of the caller's that could not be written, the common log is only copied there and goes
  // on.
  //
  //   "[d/m/yy h:mm] [process] [class] [location] [step] [severity] [number] [description]" CR LF
  //
  // Reloads the settings each time. Never fails: what cannot be written is not. Many processes may
  // write to the same files.
  ErrInfo writeLog(const Variant& sErrLogName = Missing{});

 private:
  struct Origin {
    Text location;
    Text process;
    Text className;
    Text step;
  };

  const Origin& origin() const noexcept;
  std::string logRecord() const;

  std::int32_t numberInfo_ = 0;
  Text descriptionInfo_;
  std::int16_t typeInfo_ = 0;
  // Shared by copies, so that a result which a member returns often costs no texts; null is empty.
  std::shared_ptr<Origin> origin_;
  // Of the log, not of the result.
  std::int32_t switchSize_ = 0;
  std::int16_t traceLevel_ = 0;
};

}  // namespace veltgeneral
