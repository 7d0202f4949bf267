// The --growth report.
#include "foundation/Tools.h"

void Tools::growthReport() {}
