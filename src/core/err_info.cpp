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

const ErrInfo::Origin& ErrInfo::origin() const noexcept {
  static const Origin kNone;
  return origin_ ? *origin_ : kNone;
}

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
  Origin origin{.location = Text(sLocationInfo),
                .process = optionalText(vntProcessInfo),
                .className = optionalText(vntClassInfo),
                .step = optionalText(vntStepInfo)};
  auto shared = std::make_shared<Origin>(std::move(origin));
  // The arguments may be texts of this very object.
  descriptionInfo_ = sDescriptionInfo;
  origin_ = std::move(shared);
  numberInfo_ = lNumberInfo;
  typeInfo_ = static_cast<std::int16_t>(iTypeInfo);
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
  // Never changed in place: another thread may be reading it in a copy.
  origin_ = std::make_shared<Origin>(origin());
  Origin& to = *origin_;
  take(to.location, from.vntLocationInfo);
  take(to.process, from.vntProcessInfo);
  take(to.className, from.vntClassInfo);
  take(to.step, from.vntStepInfo);
  return 0;
}

Text ErrInfo::getAttrEqualValue() const {
  Text out;
  appendNumber(out, u"vntNumberInfo", numberInfo_);
  appendText(out, u"vntDescriptionInfo", descriptionInfo_);
  appendNumber(out, u"vntTypeInfo", typeInfo_);
  appendText(out, u"vntLocationInfo", origin().location);
  appendText(out, u"vntProcessInfo", origin().process);
  appendText(out, u"vntClassInfo", origin().className);
  appendText(out, u"vntStepInfo", origin().step);
  return out;
}

ErrInfo ErrInfo::clone(ErrInfo& oObject) const {
  ErrInfo copy;
  copy.numberInfo_ = numberInfo_;
  copy.descriptionInfo_ = descriptionInfo_;
  copy.typeInfo_ = typeInfo_;
  copy.origin_ = origin_;
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
  sLocationInfo = origin().location;
  if (vntClassInfo) *vntClassInfo = origin().className;
  if (vntProcessInfo) *vntProcessInfo = origin().process;
  if (vntStepInfo) *vntStepInfo = origin().step;
  return 0;
}

void ErrInfo::clear() {
  numberInfo_ = 0;
  descriptionInfo_.clear();
  typeInfo_ = static_cast<std::int16_t>(eiDEBUGTYPE);
  origin_.reset();
}

}  // namespace veltgeneral
