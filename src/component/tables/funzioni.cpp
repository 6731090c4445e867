#include "veltgeneral/funzioni.h"

#include "component/member_row.h"
#include "component/tables/tables.h"

namespace veltgeneral {

namespace {

constexpr Row kRows[] = {
    method<&Funzioni::getValueFromCsvString>("getValueFromCsvString", "sStringValue", "sArrayValue",
                                             "lNumFieldFound"),
    method<&Funzioni::quickSortArray>("quickSortArray", "SortArray", "Low", "High", "iByteStart",
                                      "iByteLen", "bIgnoreUcase"),
    method<&Funzioni::isDateYYYYMMDD>("isDateYYYYMMDD", "sDate"),
    method<&Funzioni::isDateYYYYMMDDHH24MISS>("isDateYYYYMMDDHH24MISS", "sDate"),
    method<&Funzioni::isTimeHH24MISS>("isTimeHH24MISS", "sTime"),
    method<&Funzioni::isDateYYYYMMDDefault>("isDateYYYYMMDDefault", "sDate"),
    method<&Funzioni::isDateYYYYMMDDefaultSpaces>("isDateYYYYMMDDefaultSpaces", "sDate"),
    method<&Funzioni::isYYYYBisestile>("isYYYYBisestile", "sAnno"),
    method<&Funzioni::getDayNumberFromYYYYMMDD>("getDayNumberFromYYYYMMDD", "sDateYYYYMMDD"),
    method<&Funzioni::getDayNumberFromDate>("getDayNumberFromDate", "sDate"),
    method<&Funzioni::getDate2Xml>("getDate2Xml", "sDate"),
    method<&Funzioni::getDateFromXml>("getDateFromXml", "sDate"),
    method<&Funzioni::getBool2Xml>("getBool2Xml", "vntBool"),
    method<&Funzioni::getBoolFromXml>("getBoolFromXml", "vntBool"),
    method<&Funzioni::getDur2Xml>("getDur2Xml", "vntDur"),
    method<&Funzioni::getDurFromXml>("getDurFromXml", "vntDur"),
    method<&Funzioni::getWork2Xml>("getWork2Xml", "vntBool"),
    method<&Funzioni::getWorkFromXml>("getWorkFromXml", "vntWork"),
    method<&Funzioni::getNumber2Xml>("getNumber2Xml", "vntValue"),
    method<&Funzioni::getNumberFromXml>("getNumberFromXml", "vntValue"),
    method<&Funzioni::getDataForDB>("getDataForDB", "lEngine", "sDateYYYYMMDDHHMMSS"),
    method<&Funzioni::getBoolForDB>("getBoolForDB", "lEngine"),
    method<&Funzioni::getBoolForDBx>("getBoolForDBx", "lEngine", "vntBool"),
    method<&Funzioni::getNumberForDB>("getNumberForDB", "lEngine", "vntValue"),
    method<&Funzioni::normStringForDb>("normStringForDb", "sStringa", "sStringaOut"),
    method<&Funzioni::normStringNoCRLF>("normStringNoCRLF", "sStringa", "sStringaOut"),
    method<&Funzioni::normStringOnlyAscii>("normStringOnlyAscii", "sStringa", "sStringaOut"),
    method<&Funzioni::normStringOnlyApice>("normStringOnlyApice", "sStringa", "sStringaOut"),
    method<&Funzioni::normStringForXML>("normStringForXML", "sStringa", "sStringaOut"),
    method<&Funzioni::normStringOnlyApiceWithNull>("normStringOnlyApiceWithNull", "vntStringa",
                                                   "vntStringaOut"),
    method<&Funzioni::simpleEncrypt>("simpleEncrypt", "sToEncrypt", "sEncrypted"),
    method<&Funzioni::simpleDecrypt>("simpleDecrypt", "sToDecrypt", "sDecrypted"),
    method<&Funzioni::createPdfFile>("createPdfFile", "sCommandFile", "sPdfFile"),
    method<&Funzioni::createPdfStream>("createPdfStream", "vntCommandStream", "vntPdfStream"),
    method<&Funzioni::getWinAndSistemDir>("getWinAndSistemDir", "sWinDir", "sSystemDir"),
};

}  // namespace

template <>
Class describeClass<Funzioni>() {
  return {"Funzioni", "Checks and conversions of values", MemberTable<kRows>::kMembers,
          &makeObject<Funzioni>};
}

}  // namespace veltgeneral
