// The --storage report.
#include "foundation/Tools.h"

void Tools::storageReport() {}
