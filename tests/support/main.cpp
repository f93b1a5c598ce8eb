// Test support: the main function of every test program.
#include "tests/support/expected_warnings.h"

#include <gmock/gmock.h>

#include <QApplication>

int main(int argc, char** argv) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    QApplication::setStyle(QStringLiteral("fusion"));
    labelcut::test::installWarningTrap();
    testing::InitGoogleMock(&argc, argv);
    return RUN_ALL_TESTS();
}
