#include "advice/ActionTests.h"

bool ActionTests::run() { return true; }
