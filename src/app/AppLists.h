#pragma once
// The roles of each list the model shows: what a delegate reads of one row. Roles that read
// state kept in the model (ticks, a row at work, an armed button) are named here so the model
// can tell the views exactly which rows to redraw.
#include "app/RecordListModel.h"
#include "advice/Rec.h"
#include "foundation/CleanItem.h"
#include "history/GrowthReport.h"
#include "monitor/AppUsage.h"
#include "monitor/Leftover.h"
#include "projects/ProjectCard.h"
#include "storage/StorageReport.h"

#include <memory>

class AppModel;

namespace AppLists {

template <class T>
using Roles = std::vector<typename RecordListModel<T>::Role>;

[[nodiscard]] std::string cleanItemKey(const CleanItem& item);
[[nodiscard]] Roles<CleanItem> cleanItemRoles(const AppModel& model);
[[nodiscard]] std::string recKey(const Rec& rec);
[[nodiscard]] Roles<Rec> recRoles(const AppModel& model);
[[nodiscard]] std::string projectKey(const ProjectCard& card);
[[nodiscard]] Roles<ProjectCard> projectRoles(const AppModel& model);
[[nodiscard]] std::string categoryKey(const StorageCategory& category);
[[nodiscard]] Roles<StorageCategory> categoryRoles();
[[nodiscard]] std::string bigFileKey(const BigFile& file);
[[nodiscard]] Roles<BigFile> bigFileRoles(const AppModel& model);
[[nodiscard]] std::string appSizeKey(const AppSize& app);
[[nodiscard]] Roles<AppSize> appSizeRoles();
[[nodiscard]] std::string growthDayKey(const GrowthDay& day);
[[nodiscard]] Roles<GrowthDay> growthDayRoles();
[[nodiscard]] std::string growthPlaceKey(const GrowthPlace& place);
[[nodiscard]] Roles<GrowthPlace> growthPlaceRoles();
[[nodiscard]] std::string appUsageKey(const AppUsage& app);
[[nodiscard]] Roles<AppUsage> appUsageRoles(const AppModel& model);
[[nodiscard]] std::string leftoverKey(const Leftover& left);
[[nodiscard]] Roles<Leftover> leftoverRoles();

} // namespace AppLists
