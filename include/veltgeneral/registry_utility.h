// RegistryUtility: single registry values as text, a client's connection settings, and the
// application settings file "Tarnview.dat" in the configured log folder.
//
// Nothing is kept between calls. Reads never raise: a missing value is the empty text. Members that
// return an ErrInfo trap their failures.
#pragma once

#include <cstdint>

#include "veltgeneral/err_info.h"
#include "veltgeneral/export.h"
#include "veltgeneral/text.h"

namespace veltgeneral {

class VELTGENERAL_API RegistryUtility {
 public:
  // The value `SubKeyRef` of the key `KeyName` below `KeyRoot`, a predefined key's number
  // (HKEY_LOCAL_MACHINE is 0x80000002). Texts come as they are, without environment expansion, cut
  // before their first NUL; numbers of 32 bits by way of their bytes' hexadecimal digits (10 is
  // "10", 258 is "18", 256 is "&h"); other types are empty.
  //
  // A value that is missing, or takes more than 1024 bytes with its final NUL, is logged as an
  // error and is the empty text. The arguments keep their values.
  Text getKeyValue(std::int32_t& KeyRoot, Text& KeyName, Text& SubKeyRef);

  // Reads an application's connection settings, each by getKeyValue. A success even where all of
  // them are missing.
  ErrInfo getInfoForConnection(TextView sApplicationName, Text& sConnectionDbName,
                               Text& sConnectionUser, Text& sConnectionPassword);

  // Stores an application's connection settings, trailing blanks removed and otherwise as they are:
  // the password too. The first failure (eiREGISTRYERROR, logged) stops; what was written before
  // stays.
  ErrInfo saveInfoForConnection(TextView sApplicationName, TextView sConnectionDbName,
                                TextView sConnectionUser, TextView sConnectionPassword);

  // Whether the machine's registry can be written, found out by writing the current time to the
  // value "Check" of SOFTWARE\Zoltra.
  bool isRegistryInWritePermission();

  // Reads one entry of Tarnview.dat, and logs its folder as a warning. The folder is separated from
  // the name by "\", which is added where it is missing, and so is the root folder where none is
  // configured. A success whatever becomes of the file: a missing entry is empty.
  ErrInfo getTarnviewConfValue(Text& sSection, Text& sKeyName, Text& sValue);
  // Writes one entry there, in the same folder. A success too: a failed write goes unnoticed.
  // `sValue` comes back as the file's code page holds it.
  ErrInfo setTarnviewConfValue(Text& sSection, Text& sKeyName, Text& sValue);

  // Replaces the whole of Tarnview.dat; the result is that of FileUtility's writeFile. Here nothing
  // is put between folder and name: "D:\data" makes D:\dataTarnview.dat.
  ErrInfo setTarnviewDatFileValue(TextView sCustomValue);

  // Whether an entry written to Tarnview.dat can be read back. Leaves it there, empty.
  bool isTarnviewDatInWritePermission();
};

}  // namespace veltgeneral
