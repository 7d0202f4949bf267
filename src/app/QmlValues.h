#pragma once
// The model's records as QML reads them: maps whose keys are the records' field names, dates
// as QDateTime, sizes as 64-bit numbers, absent values as null.
#include "advice/Rec.h"
#include "app/CleanRecords.h"
#include "app/Toast.h"
#include "foundation/DiskInfo.h"
#include "foundation/Time.h"
#include "history/GrowthReport.h"
#include "history/Pace.h"
#include "monitor/Vitals.h"
#include "projects/ProjectCard.h"
#include "scan/ScanProgress.h"
#include "storage/StorageReport.h"

#include <QDateTime>
#include <QString>
#include <QStringList>
#include <QVariant>
#include <QVariantList>
#include <QVariantMap>

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace QmlValues {

[[nodiscard]] QString text(std::string_view s);
[[nodiscard]] QVariant optionalText(const std::optional<std::string>& s);
[[nodiscard]] QStringList texts(const std::vector<std::string>& list);
[[nodiscard]] QDateTime date(TimePoint t);
[[nodiscard]] QVariant date(const std::optional<TimePoint>& t);
[[nodiscard]] QVariantList ints(const std::vector<int32_t>& list);

[[nodiscard]] QString recState(RecState s);
[[nodiscard]] QVariantMap disk(const DiskInfo& d);
[[nodiscard]] QVariantMap scanProgress(const ScanProgress& p);
[[nodiscard]] QVariantMap cleanProgress(const CleanProgress& p);
[[nodiscard]] QVariantMap cleanReport(const CleanReport& r);
[[nodiscard]] QVariantMap cleanSummary(const CleanSummary& s);
[[nodiscard]] QVariantMap toast(const Toast& t);
[[nodiscard]] QVariantMap pace(const Pace& p);
[[nodiscard]] QVariantMap vitals(const Vitals& v, TimePoint now);
[[nodiscard]] QVariantMap sharedPackages(const SharedPackages& s);
[[nodiscard]] QVariantMap growth(const GrowthReport& g);
[[nodiscard]] QVariantMap growthPlace(const GrowthPlace& p);
[[nodiscard]] QVariantMap storage(const StorageReport& r);
[[nodiscard]] QVariantMap storageItem(const StorageItem& i);
[[nodiscard]] QVariantMap leftover(const Leftover& l);
[[nodiscard]] QVariantMap projectApp(const ProjectApp& a);

} // namespace QmlValues
