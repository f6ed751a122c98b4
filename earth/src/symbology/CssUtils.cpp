#include <osgEarth/StringUtils>
#include <osgEarthSymbology/CssUtils>

namespace osgEarth::Symbology {
namespace {
const char kNameless[] = "default";

struct Block
{
    std::string name;
    std::string body;
};

std::string withoutComments(const std::string& css)
{
    std::string out;
    for (size_t i = 0; i < css.size(); ++i) {
        if (css.compare(i, 2, "/*") == 0) {
            const size_t end = css.find("*/", i + 2);
            if (end == std::string::npos)
                break;
            i = end + 1;
        } else
            out += css[i];
    }
    return out;
}

/// First of the characters at or after `from` that stands outside quotes; the text's end if none.
size_t findUnquoted(const std::string& text, const char* wanted, size_t from)
{
    const std::string set(wanted);
    bool quoted = false;
    for (size_t i = from; i < text.size(); ++i) {
        if (text[i] == '"')
            quoted = !quoted;
        else if (!quoted && set.find(text[i]) != std::string::npos)
            return i;
    }
    return text.size();
}

std::vector<Block> blocksOf(const std::string& css)
{
    const std::string text = withoutComments(css);
    std::vector<Block> blocks;
    if (findUnquoted(text, "{", 0) == text.size()) {
        if (!trim(text).empty())
            blocks.push_back({kNameless, text});
        return blocks;
    }
    for (size_t at = 0; at < text.size();) {
        const size_t open = findUnquoted(text, "{", at);
        if (open == text.size())
            break;
        const size_t close = findUnquoted(text, "}", open + 1);
        const std::string name = trim(text.substr(at, open - at));
        blocks.push_back({name.empty() ? kNameless : name, text.substr(open + 1, close - open - 1)});
        at = close + 1;
    }
    return blocks;
}
} // namespace

void CssUtils::readConfig(const std::string& css, const std::string& referrer, ConfigSet& output)
{
    for (const Block& block : blocksOf(css)) {
        Config conf(block.name);
        for (size_t at = 0; at < block.body.size();) {
            const size_t end = findUnquoted(block.body, ";", at);
            const std::string property = block.body.substr(at, end - at);
            const size_t colon = findUnquoted(property, ":", 0);
            const std::string key = toLower(trim(property.substr(0, colon)));
            if (!key.empty() && colon < property.size())
                conf.add(Config(key, trim(property.substr(colon + 1))));
            at = end + 1;
        }
        conf.setReferrer(referrer);
        output.push_back(conf);
    }
}

void CssUtils::split(const std::string& css, std::vector<std::string>& output)
{
    for (const Block& block : blocksOf(css))
        output.push_back(block.name + " {" + block.body + "}");
}
} // namespace osgEarth::Symbology
