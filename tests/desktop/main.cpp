// The tests of windows need an application, and a display or the toolkit's stand-in for one.
#include <gtest/gtest.h>

#include <QApplication>
#include <cstdlib>

int main(int count, char** words) {
  ::setenv("QT_QPA_PLATFORM", "offscreen", 0);
  ::setenv("QT_LOGGING_RULES", "*=false", 0);  // of what that stand-in cannot do
  ::testing::InitGoogleTest(&count, words);
  const QApplication application(count, words);
  QApplication::setQuitOnLastWindowClosed(false);
  return RUN_ALL_TESTS();
}
