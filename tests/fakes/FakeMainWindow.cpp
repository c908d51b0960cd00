#include "FakeMainWindow.h"

#include "moc_FakeMainWindow.cpp"
