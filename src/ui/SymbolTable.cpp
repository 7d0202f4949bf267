#include "ui/SymbolTable.h"

#include <algorithm>
#include <array>

namespace SymbolTable {

namespace {

// Name, code point in the Material icon font (the comment names its glyph).
constexpr std::array table{
    Symbol{"custom.broom", 0, "broom"},
    Symbol{"custom.ghost", 0, "ghost"},
    Symbol{"checkmark", u'\ue5ca'}, // check
    Symbol{"checkmark.circle", u'\ue86c'}, // check_circle
    Symbol{"checkmark.shield", u'\ue8e8'}, // verified_user
    Symbol{"internaldrive", u'\ue1db'}, // storage
    Symbol{"memorychip", u'\ue322'}, // memory
    Symbol{"cpu", u'\ue30d'}, // developer_board
    Symbol{"trash", u'\ue872'}, // delete
    Symbol{"power", u'\ue8ac'}, // power_settings_new
    Symbol{"sparkle", u'\ue65f'}, // auto_awesome
    Symbol{"chart.pie", u'\ue6c4'}, // pie_chart
    Symbol{"calendar", u'\ue935'}, // calendar_today
    Symbol{"hourglass", u'\ue88b'}, // hourglass_empty
    Symbol{"info", u'\ue88e'}, // info
    Symbol{"exclamationmark", u'\ue645'}, // priority_high
    Symbol{"exclamationmark.triangle.fill", u'\ue002'}, // warning
    Symbol{"arrow.counterclockwise", u'\uf053'}, // restart_alt
    Symbol{"arrow.clockwise", u'\ue5d5'}, // refresh
    Symbol{"macwindow", u'\ue069'}, // web_asset
    Symbol{"lock.fill", u'\ue897'}, // lock
    Symbol{"lock.shield", u'\ue32a'}, // security
    Symbol{"bolt.fill", u'\uea0b'}, // bolt
    Symbol{"moon.zzz", u'\uef44'}, // bedtime
    Symbol{"clock", u'\ue8b5'}, // schedule
    Symbol{"chevron.down", u'\ue5cf'}, // expand_more
    Symbol{"chevron.up", u'\ue5ce'}, // expand_less
    Symbol{"chevron.right", u'\ue5cc'}, // chevron_right
    Symbol{"questionmark.circle", u'\ue8fd'}, // help_outline
    Symbol{"gauge.with.needle", u'\ue9e4'}, // speed
    Symbol{"thermometer.medium", u'\uf076'}, // thermostat
    Symbol{"terminal", u'\ueb8e'}, // terminal
    Symbol{"app", u'\ue5c3'}, // apps
    Symbol{"app.dashed", u'\ue3c2'}, // crop_free
    Symbol{"apple.logo", u'\uf05e'}, // settings_suggest
    Symbol{"square.grid.2x2", u'\ue9b0'}, // grid_view
    Symbol{"folder", u'\ue2c7'}, // folder
    Symbol{"doc", u'\ue24d'}, // insert_drive_file
    Symbol{"doc.text", u'\ue873'}, // description
    Symbol{"doc.zipper", u'\ueb2c'}, // folder_zip
    Symbol{"doc.richtext", u'\uef42'}, // article
    Symbol{"film", u'\ue02c'}, // movie
    Symbol{"globe", u'\ue80b'}, // public
    Symbol{"arrow.down.to.line", u'\uf090'}, // download
    Symbol{"arrow.down.circle", u'\uf181'}, // arrow_circle_down
    Symbol{"chevron.left.forwardslash.chevron.right", u'\ue86f'}, // code
    Symbol{"shippingbox", u'\ue1a1'}, // inventory_2
    Symbol{"hammer", u'\uea59'}, // hardware
    Symbol{"wrench.and.screwdriver", u'\uf10b'}, // handyman
    Symbol{"square.stack.3d.up", u'\ue53b'}, // layers
    Symbol{"opticaldisc", u'\ue019'}, // album
    Symbol{"display", u'\ue30c'}, // desktop_windows
    Symbol{"cube", u'\ue9fe'}, // view_in_ar
    Symbol{"iphone", u'\ue32c'}, // smartphone
    Symbol{"mug", u'\uefef'}, // coffee
    Symbol{"waveform", u'\ue1b8'}, // graphic_eq
    Symbol{"music.note", u'\ue405'}, // music_note
    Symbol{"powerplug", u'\ue63c'}, // power
    Symbol{"slider.horizontal.3", u'\ue429'}, // tune
    Symbol{"line.3.horizontal", u'\ue25d'}, // drag_handle
    Symbol{"magnifyingglass", u'\ue8b6'}, // search
    Symbol{"gearshape.2", u'\ue8b8'}, // settings
    Symbol{"arrow.up.forward.app", u'\ue89e'}, // open_in_new
    Symbol{"icloud.and.arrow.down", u'\ue2c0'}, // cloud_download
    Symbol{"bubble.left", u'\ue0cb'}, // chat_bubble_outline
    Symbol{"bubbles.and.sparkles", u'\uf0ff'}, // cleaning_services
    Symbol{"clock.arrow.circlepath", u'\ue889'}, // history
    Symbol{"menubar.dock.rectangle", u'\ue30e'}, // dock
    Symbol{"stop.fill", u'\ue047'}, // stop
    Symbol{"xmark", u'\ue5cd'}, // close
    Symbol{"plus", u'\ue145'}, // add
    Symbol{"ellipsis", u'\ue5d3'}, // more_horiz
};

constexpr Symbol neutral{"category", u'\ue574'};

} // namespace

const Symbol& find(std::string_view name) {
    auto it = std::find_if(table.begin(), table.end(), [&](const Symbol& s) { return s.name == name; });
    return it != table.end() ? *it : neutral;
}

bool known(std::string_view name) {
    return std::any_of(table.begin(), table.end(), [&](const Symbol& s) { return s.name == name; });
}

const Symbol& fallback() { return neutral; }

std::span<const Symbol> all() { return table; }

} // namespace SymbolTable
