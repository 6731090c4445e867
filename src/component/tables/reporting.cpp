#include "veltgeneral/reporting.h"

#include "component/member_row.h"
#include "component/tables/tables.h"

namespace veltgeneral {
namespace {

constexpr Row kRows[] = {
    get<&Reporting::outputMode>("outputMode"),
    put<&Reporting::setOutputMode>("outputMode"),
    method<&Reporting::prtBox>("prtBox", "iX1", "iY1", "iX2", "iY2", "lColor"),
    method<&Reporting::prtLayoutPaginaBase>("prtLayoutPaginaBase", optional("vntHeader"),
                                            optional("vntFooter"), optional("vntPageNumber"),
                                            optional("bWithDate"), optional("bBoldLayout")),
    method<&Reporting::formattaStringa>("formattaStringa", "sStringa", "iLenght"),
    method<&Reporting::prtTesto>("prtTesto", "iX1", "iY1", "iSize", "bBold", "bItalic", "sStringa"),
    method<&Reporting::prtBoxWithTesto>("prtBoxWithTesto", "iX1", "iY1", "iSize", "bBold",
                                        "bItalic", "sStringa", "lBgkColor", "iLenBox"),
    method<&Reporting::openReport>("openReport"),
    method<&Reporting::newPage>("newPage"),
    method<&Reporting::closeReport>("closeReport"),
};

}  // namespace

template <>
Class describeClass<Reporting>() {
  return {"Reporting", "Framed pages, boxes and text on a form or the printer",
          MemberTable<kRows>::kMembers, &makeObject<Reporting>};
}

}  // namespace veltgeneral
