#include "veltgeneral/file_utility.h"

#include "component/member_row.h"
#include "component/tables/tables.h"

namespace veltgeneral {
namespace {

constexpr Row kRows[] = {
    getField<&FileUtility::daylightoffset>("daylightoffset"),
    putField<&FileUtility::daylightoffset>("daylightoffset"),
    getField<&FileUtility::utcoffset>("utcoffset"),
    putField<&FileUtility::utcoffset>("utcoffset"),
    method<&FileUtility::numFileInDir>("numFileInDir", "sDirectory", "iNumFile"),
    method<&FileUtility::writeFile>("writeFile", "sFileName", "attributeFile", "sTextFile"),
    method<&FileUtility::readFile>("readFile", "sFileName", "sTextFile"),
    method<&FileUtility::readBinaryFile>("readBinaryFile", "sFileName", "vntTextFile"),
    method<&FileUtility::UpdateFileTime>("UpdateFileTime", "fname", "fyear", "fmonth", "fdayofweek",
                                         "fday", "fhour", "fmin", "fsec"),
    method<&FileUtility::getCsvStringFromArray>("getCsvStringFromArray", "sStringFile",
                                                "sArrayValue", "lNumRows", "lNumColumns", "sDelim"),
    method<&FileUtility::writeCsvFileFromArray>("writeCsvFileFromArray", "sFileName", "sArrayValue",
                                                "lNumRows", "lNumColumns"),
    method<&FileUtility::readAndLoadInArrayByCRLF>("readAndLoadInArrayByCRLF", "sFileName",
                                                   "listRows", "lNumRows"),
    method<&FileUtility::getArrayFromCsvFile>("getArrayFromCsvFile", "sFileName", "sArrayValue",
                                              "lNumRows", "lNumColumns"),
    method<&FileUtility::ooReadFile>("ooReadFile", "sFlLename", "iObjectLen", "lStartPosition",
                                     "iNumObject", "sOList"),
};

}  // namespace

template <>
Class describeClass<FileUtility>() {
  return {"FileUtility", "Whole files, delimited tables, record files and file times",
          MemberTable<kRows>::kMembers, &makeObject<FileUtility>};
}

}  // namespace veltgeneral
