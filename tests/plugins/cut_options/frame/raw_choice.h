// Test support: choice keywords that libcups would not read from a file.
#pragma once

#include <gtest/gtest.h>

#include <QByteArray>

#include <cstring>

#include "host/settings/ppd_calls.h"

namespace labelcut::test {

/// Writes other bytes over the keyword of an opened PPD's choice.
inline void renameChoice(const ppd::File& ppd, const char* keyword, int index,
                         const QByteArray& name) {
    ppd_option_t* option = ppd::findOption(ppd.get(), keyword);
    ASSERT_TRUE(option && index < option->num_choices && name.size() < ppd::kMaxName);
    std::memcpy(option->choices[index].choice, name.constData(),
                static_cast<std::size_t>(name.size()) + 1);
}

} // namespace labelcut::test
