#include "tests/fakes/FakeMainWindow.h"

#include "moc_FakeMainWindow.cpp" // NOLINT(bugprone-suspicious-include): as moc names it
