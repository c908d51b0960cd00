#include "tests/fakes/FakeMainWindow.h"

#include "moc_FakeMainWindow.cpp"
