// Shared main of the widget tests: one QApplication on the offscreen platform
// with a fixed style, so that palettes and scroll bar sizes are the same
// everywhere, and modal forms and message boxes that answer themselves.
#include "support/ModalAnswers.h"

#include <QApplication>

#include <gtest/gtest.h>

int main(int argc, char** argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    QApplication::setStyle(QStringLiteral("Fusion"));
    sx::test::RefuseModals();
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
