#include "automation/builtin_locales.h"

namespace veltgeneral {

Locale italianLocale() {
  Locale it;
  it.name = u"it_IT";
  it.decimal = u',';
  it.thousands = u'.';
  it.currency = u"€";
  it.order = DateOrder::dayMonthYear;
  it.twoDigitDay = true;
  it.twoDigitMonth = true;
  it.months = {u"gennaio", u"febbraio", u"marzo",     u"aprile",  u"maggio",   u"giugno",
               u"luglio",  u"agosto",   u"settembre", u"ottobre", u"novembre", u"dicembre"};
  it.shortMonths = {u"gen", u"feb", u"mar", u"apr", u"mag", u"giu",
                    u"lug", u"ago", u"set", u"ott", u"nov", u"dic"};
  it.days = {u"domenica", u"lunedì", u"martedì", u"mercoledì", u"giovedì", u"venerdì", u"sabato"};
  it.shortDays = {u"dom", u"lun", u"mar", u"mer", u"gio", u"ven", u"sab"};
  return it;
}

Locale usEnglishLocale() {
  Locale us;
  us.name = u"en_US";
  us.decimal = u'.';
  us.thousands = u',';
  us.currency = u"$";
  us.order = DateOrder::monthDayYear;
  us.months = {u"January", u"February", u"March",     u"April",   u"May",      u"June",
               u"July",    u"August",   u"September", u"October", u"November", u"December"};
  us.shortMonths = {u"Jan", u"Feb", u"Mar", u"Apr", u"May", u"Jun",
                    u"Jul", u"Aug", u"Sep", u"Oct", u"Nov", u"Dec"};
  us.days = {u"Sunday", u"Monday", u"Tuesday", u"Wednesday", u"Thursday", u"Friday", u"Saturday"};
  us.shortDays = {u"Sun", u"Mon", u"Tue", u"Wed", u"Thu", u"Fri", u"Sat"};
  us.twoDigitHour = false;
  us.twelveHours = true;
  us.am = u"AM";
  us.pm = u"PM";
  return us;
}

}  // namespace veltgeneral
