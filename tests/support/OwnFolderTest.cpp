#include "support/OwnFolderTest.h"

#include "moc_OwnFolderTest.cpp"
