// The --speed report.
#include "foundation/Tools.h"

void Tools::speedReport() {}
