#include "veltgeneral/err_info.h"

#include <utility>

#include "automation/coerce.h"
#include "veltgeneral/runtime_error.h"

namespace veltgeneral {
namespace {

Text optionalText(const Variant& value) {
  return kindOf(value) == Kind::missing ? Text() : toText(value);
}

bool saysSomething(const Variant& value) {
  return kindOf(value) != Kind::empty && kindOf(value) != Kind::null &&
         !trim(toText(value)).empty();
}

void requireNumeric(const Variant& value) {
  // The member would answer eiABORTED, which its 16-bit result cannot hold.
  if (!isNumeric(value)) throw RuntimeError(RunTime::overflow);
}

void appendItem(Text& out, TextView name, TextView value) {
  out.append(name).append(u"=\"").append(value).append(u"\" ");
}

void appendText(Text& out, TextView name, TextView value) {
  const TextView trimmed = trim(value);
  if (!trimmed.empty()) appendItem(out, name, trimmed);
}

// Strictly greater, not non-zero: failure codes have the top bit set, so a failed result never
// writes its number, and callers rely on that.
void appendNumber(Text& out, TextView name, std::int32_t value) {
  if (value > 0) appendItem(out, name, toText(value));
}

}  // namespace

ErrInfo::ErrInfo(std::int32_t lNumberInfo, TextView sDescriptionInfo, typeInfoCostant iTypeInfo,
                 TextView sLocationInfo, const Variant& vntClassInfo, const Variant& vntProcessInfo,
                 const Variant& vntStepInfo) {
  fill(lNumberInfo, sDescriptionInfo, iTypeInfo, sLocationInfo, vntClassInfo, vntProcessInfo,
       vntStepInfo);
}

std::int16_t ErrInfo::fill(std::int32_t lNumberInfo, TextView sDescriptionInfo,
                           typeInfoCostant iTypeInfo, TextView sLocationInfo,
                           const Variant& vntClassInfo, const Variant& vntProcessInfo,
                           const Variant& vntStepInfo) {
  // Converted first: a value that is no text must not leave half a fill behind.
  Text classInfo = optionalText(vntClassInfo);
  Text processInfo = optionalText(vntProcessInfo);
  Text stepInfo = optionalText(vntStepInfo);
  numberInfo_ = lNumberInfo;
  descriptionInfo_ = sDescriptionInfo;
  typeInfo_ = static_cast<std::int16_t>(iTypeInfo);
  locationInfo_ = sLocationInfo;
  classInfo_ = std::move(classInfo);
  processInfo_ = std::move(processInfo);
  stepInfo_ = std::move(stepInfo);
  return 0;
}

std::int16_t ErrInfo::ErrInfoNew(structError& structErrInfo) {
  const structError& from = structErrInfo;
  if (saysSomething(from.vntNumberInfo)) {
    requireNumeric(from.vntNumberInfo);
    numberInfo_ = toInt32(from.vntNumberInfo);
  }
  const auto take = [](Text& field, const Variant& value) {
    if (saysSomething(value)) field = toText(value);
  };
  take(descriptionInfo_, from.vntDescriptionInfo);
  if (saysSomething(from.vntTypeInfo)) {
    requireNumeric(from.vntTypeInfo);
    typeInfo_ = toInt16(from.vntTypeInfo);
  }
  take(locationInfo_, from.vntLocationInfo);
  take(processInfo_, from.vntProcessInfo);
  take(classInfo_, from.vntClassInfo);
  take(stepInfo_, from.vntStepInfo);
  return 0;
}

Text ErrInfo::getAttrEqualValue() const {
  Text out;
  appendNumber(out, u"vntNumberInfo", numberInfo_);
  appendText(out, u"vntDescriptionInfo", descriptionInfo_);
  appendNumber(out, u"vntTypeInfo", typeInfo_);
  appendText(out, u"vntLocationInfo", locationInfo_);
  appendText(out, u"vntProcessInfo", processInfo_);
  appendText(out, u"vntClassInfo", classInfo_);
  appendText(out, u"vntStepInfo", stepInfo_);
  return out;
}

ErrInfo ErrInfo::clone(ErrInfo& oObject) const {
  ErrInfo copy;
  copy.numberInfo_ = numberInfo_;
  copy.descriptionInfo_ = descriptionInfo_;
  copy.typeInfo_ = typeInfo_;
  copy.locationInfo_ = locationInfo_;
  copy.processInfo_ = processInfo_;
  copy.classInfo_ = classInfo_;
  copy.stepInfo_ = stepInfo_;
  oObject = std::move(copy);
  ErrInfo status;
  status.clear();
  return status;
}

std::int16_t ErrInfo::getInfo(std::int32_t& lNumberInfo, Text& sDescriptionInfo,
                              std::int16_t& iTypeInfo, Text& sLocationInfo, Variant* vntClassInfo,
                              Variant* vntProcessInfo, Variant* vntStepInfo) const {
  lNumberInfo = numberInfo_;
  sDescriptionInfo = descriptionInfo_;
  iTypeInfo = typeInfo_;
  sLocationInfo = locationInfo_;
  if (vntClassInfo) *vntClassInfo = classInfo_;
  if (vntProcessInfo) *vntProcessInfo = processInfo_;
  if (vntStepInfo) *vntStepInfo = stepInfo_;
  return 0;
}

void ErrInfo::clear() {
  numberInfo_ = 0;
  descriptionInfo_.clear();
  typeInfo_ = static_cast<std::int16_t>(eiDEBUGTYPE);
  locationInfo_.clear();
  processInfo_.clear();
  classInfo_.clear();
  stepInfo_.clear();
}

}  // namespace veltgeneral
