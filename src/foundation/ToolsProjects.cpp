// The --projects report.
#include "foundation/Tools.h"

void Tools::projectsReport() {}
