// The house as docs/architecture.md draws it: what includes what.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <map>
#include <regex>
#include <set>
#include <sstream>

namespace fs = std::filesystem;

namespace {
const fs::path root = AX_SOURCE_DIR;
/// From a folder to the folders that its files include from, each with one such file.
using Arrows = std::map<std::string, std::map<std::string, std::string>>;

// `include` tells in its first group what a line includes; `folderOf` makes a folder of that, or nothing.
template <typename FolderOf>
Arrows ArrowsIn(const fs::path& base, const std::string& top, const char* include, FolderOf folderOf)
{
    const std::regex pattern(include);
    Arrows arrows;
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(base / top)) {
        const std::string file = fs::relative(entry.path(), base).generic_string();
        std::ifstream text(entry.path());
        std::smatch match;
        for (std::string line; entry.is_regular_file() && std::getline(text, line);)
            if (std::regex_search(line, match, pattern))
                if (const std::string folder = folderOf(match[1]); !folder.empty())
                    arrows[fs::path(file).parent_path().generic_string()].emplace(folder, file);
    }
    return arrows;
}

std::string FolderOf(const std::string& header)
{
    return header.substr(0, header.rfind('/'));
}

/// Takes folders away that lead to none of the others, until only circles are left.
std::set<std::string> Circles(Arrows arrows)
{
    std::set<std::string> left;
    for (auto& [folder, targets] : arrows)
        left.insert(folder);
    for (bool changed = true; changed;) {
        changed = false;
        for (const auto& [folder, targets] : arrows) {
            const auto isOther = [&, from = folder](const auto& target) {
                return target.first != from && left.count(target.first) > 0;
            };
            if (left.count(folder) > 0 && std::none_of(targets.begin(), targets.end(), isOther))
                changed = left.erase(folder) > 0;
        }
    }
    return left;
}

std::string RoomOf(const std::string& folder)
{
    return folder.substr(0, folder.find('/'));
}
} // namespace

TEST(Structure, ArrowsOfTheLibraryRunToLowerRooms)
{
    const std::vector<std::string> rooms{"companion", "scene",  "analysis", "interaction",
                                         "mission",   "viewer", "host"};
    const auto floor = [&](const std::string& folder) {
        return std::find(rooms.begin(), rooms.end(), RoomOf(folder)) - rooms.begin();
    };
    Arrows all;
    for (const std::string& room : rooms)
        all.merge(ArrowsIn(root, room, R"re(#include "(\w+/[\w/]+)\.h")re", FolderOf));
    EXPECT_GT(all.size(), 12u) << "nothing was read";
    for (const auto& [folder, targets] : all)
        for (const auto& [target, file] : targets)
            if (floor(target) < static_cast<std::ptrdiff_t>(rooms.size())) {
                EXPECT_LE(floor(target), floor(folder)) << file << " includes from " << target;
            }
    EXPECT_EQ(Circles(all), std::set<std::string>()) << "folders that include each other in a circle";
}

TEST(Structure, ArrowsBetweenTheLibrariesOfCompanionRunDown)
{
    const std::map<std::string, std::set<std::string>> below{
        {"AxAlgorthm", {"AxAlgorthm"}},
        {"AxData", {"AxData", "AxAlgorthm"}},
        {"AxBaseUI", {"AxBaseUI", "AxAlgorthm"}},
        {"AxTelemetry", {"AxTelemetry", "AxData", "AxAlgorthm"}},
    };
    const auto libraryOf = [](const std::string& header) { return RoomOf(header); };
    std::set<std::string> seen;
    for (const auto& [folder, targets] :
         ArrowsIn(root / "companion", "",
                  R"re(#include [<"]((?:Ax|osg|scene|viewer)\w*/[\w/]+)(?:\.h)?[>"])re", libraryOf))
        if (const auto library = below.find(RoomOf(folder)); library != below.end())
            for (const auto& [target, file] : targets) {
                EXPECT_EQ(library->second.count(target), 1u) << file << " includes from " << target;
                seen.insert(library->first);
            }
    EXPECT_EQ(seen.count("AxData"), 1u) << "nothing was read";
}

// earth/rooms.txt has a line for each room: "room: rooms it may include | public headers that it implements".
TEST(Structure, ArrowsOfTheMapEngineRunToTheRoomsThatItsListNames)
{
    std::map<std::string, std::set<std::string>> allowed;
    std::map<std::string, std::string> owners; // of a public header, or of all in the folder that ends in "/"
    std::ifstream list(root / "earth/rooms.txt");
    for (std::string line; std::getline(list, line);) {
        if (line.empty() || line[0] == '#')
            continue;
        const std::string room = line.substr(0, line.find(':'));
        std::istringstream below(line.substr(line.find(':') + 1, line.find('|') - line.find(':') - 1));
        std::istringstream headers(line.substr(line.find('|') + 1));
        std::set<std::string>& names = allowed[room];
        for (std::string name; below >> name; names.insert(name))
            EXPECT_TRUE(allowed.count(name) == 1 && name != room) << room << " names " << name;
        for (std::string name; headers >> name; owners[name.substr(0, name.find('*'))] = room)
            continue;
        names.insert(room);
    }
    const auto ownerOf = [&](const std::string& header) {
        const auto own = owners.find(header);
        return own != owners.end() ? own->second : owners[FolderOf(header) + "/"];
    };
    Arrows arrows = ArrowsIn(root / "earth/src", "", R"re(#include "(\w+/[\w/]+)\.h")re", FolderOf);
    EXPECT_GT(arrows.size(), 8u) << "nothing was read";
    for (auto& [folder, targets] :
         ArrowsIn(root / "earth/src", "", "#include <(osgEarth\\w*/[\\w/]+)>", ownerOf))
        arrows[folder].merge(targets);
    for (const auto& [folder, targets] : arrows)
        for (const auto& [target, file] : targets)
            EXPECT_EQ(allowed[RoomOf(folder)].count(RoomOf(target)), 1u)
                << file << " includes from " << target;
}

TEST(Structure, SeesACircle)
{
    const Arrows open{{"a", {{"b", ""}}}, {"b", {{"b", ""}, {"c", ""}}}, {"c", {}}};
    EXPECT_TRUE(Circles(open).empty());
    Arrows closed = open;
    closed["c"]["a"];
    EXPECT_EQ(Circles(closed).size(), 3u);
}
