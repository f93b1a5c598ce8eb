// The printing framework: looking things up in a PPD.
//
// libcups marks its PPD functions deprecated, and a successor carries them under other names.
// Plug-ins call them through here and nowhere else. The records (ppd_file_t, ppd_option_t,
// ppd_choice_t, ppd_attr_t) are public layouts of <cups/ppd.h> and read directly; they belong to
// the file and are borrowed from it. Every function answers null for a null file, option or
// keyword. Keywords come without the asterisk.
#pragma once

#include <cups/ppd.h>

namespace labelcut::ppd {

/// PPD_MAX_NAME: keywords and choice keywords are arrays of this many bytes, terminator included.
inline constexpr int kMaxName = PPD_MAX_NAME;

/// The option of that main keyword; case is ignored.
ppd_option_t* findOption(ppd_file_t* file, const char* keyword);
/// The choice that is marked for the option of that keyword; null when none is.
ppd_choice_t* findMarkedChoice(ppd_file_t* file, const char* keyword);
/// The option's choice of that keyword; case is ignored.
ppd_choice_t* findChoice(ppd_option_t* option, const char* choice);
/// The first attribute of that main keyword, whatever its option keyword; case is ignored.
ppd_attr_t* findAttr(ppd_file_t* file, const char* keyword);

} // namespace labelcut::ppd
