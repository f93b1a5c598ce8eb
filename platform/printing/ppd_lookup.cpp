// The printing framework: looking things up in a PPD.
#include "platform/printing/ppd_lookup.h"

#pragma GCC diagnostic ignored "-Wdeprecated-declarations"

namespace labelcut::ppd {

ppd_option_t* findOption(ppd_file_t* file, const char* keyword) {
    return file && keyword ? ppdFindOption(file, keyword) : nullptr;
}

ppd_choice_t* findMarkedChoice(ppd_file_t* file, const char* keyword) {
    return file && keyword ? ppdFindMarkedChoice(file, keyword) : nullptr;
}

ppd_choice_t* findChoice(ppd_option_t* option, const char* choice) {
    return option && choice ? ppdFindChoice(option, choice) : nullptr;
}

ppd_attr_t* findAttr(ppd_file_t* file, const char* keyword) {
    return file && keyword ? ppdFindAttr(file, keyword, nullptr) : nullptr;
}

} // namespace labelcut::ppd
