// main() for the tests that need a QApplication. The platform (offscreen or xcb under Xvfb)
// comes from QT_QPA_PLATFORM, which CTest sets per test.
#include <QApplication>
#include <clocale>
#include <gtest/gtest.h>

int main(int argc, char** argv)
{
    QApplication app(argc, argv);
    // Qt sets the locale from the environment; number formatting in the program and libmpv
    // expect the C numeric locale.
    std::setlocale(LC_NUMERIC, "C");
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
