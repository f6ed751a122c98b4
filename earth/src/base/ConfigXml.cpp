#include "base/ConfigXml.h"

#include <expat.h>
#include <istream>
#include <memory>
#include <vector>

namespace osgEarth {
namespace {
// Deeper than any map file, shallow enough for every thread's stack.
constexpr size_t kMaxDepth = 64;

struct Reader
{
    XML_Parser parser = nullptr;
    Config root;
    std::vector<Config*> open;
    bool haveRoot = false;
    std::string error;

    void fail(const std::string& what)
    {
        if (error.empty())
            error = what;
        XML_StopParser(parser, XML_FALSE);
    }
};

void XMLCALL startElement(void* user, const XML_Char* name, const XML_Char** attributes)
{
    auto& reader = *static_cast<Reader*>(user);
    if (reader.open.size() >= kMaxDepth)
        return reader.fail("elements nested too deeply");
    Config element(toLower(name));
    for (; *attributes; attributes += 2)
        element.add(Config(toLower(attributes[0]), attributes[1]));
    if (reader.open.empty()) {
        reader.root = element;
        reader.haveRoot = true;
        reader.open.push_back(&reader.root);
    } else {
        ConfigSet& siblings = reader.open.back()->children();
        siblings.push_back(element);
        reader.open.push_back(&siblings.back());
    }
}

void XMLCALL endElement(void* user, const XML_Char*)
{
    auto& reader = *static_cast<Reader*>(user);
    if (reader.open.empty())
        return;
    reader.open.back()->value() = trim(reader.open.back()->value());
    reader.open.pop_back();
}

void XMLCALL characters(void* user, const XML_Char* text, int length)
{
    auto& reader = *static_cast<Reader*>(user);
    if (!reader.open.empty())
        reader.open.back()->value().append(text, static_cast<size_t>(length));
}

void escape(const std::string& text, std::string& out)
{
    for (char c : text) {
        switch (c) {
        case '&':
            out += "&amp;";
            break;
        case '<':
            out += "&lt;";
            break;
        case '>':
            out += "&gt;";
            break;
        case '"':
            out += "&quot;";
            break;
        default:
            out += c;
        }
    }
}

void write(const Config& conf, int depth, std::string& out)
{
    const std::string indent(static_cast<size_t>(depth) * 2, ' ');
    out += indent + "<" + conf.key() + ">";
    escape(conf.value(), out);
    if (!conf.children().empty()) {
        out += "\n";
        for (const Config& c : conf.children())
            write(c, depth + 1, out);
        out += indent;
    }
    out += "</" + conf.key() + ">\n";
}
} // namespace

bool readXml(std::istream& in, Config& out, std::string& out_cause)
{
    Reader reader;
    const std::unique_ptr<std::remove_pointer_t<XML_Parser>, decltype(&XML_ParserFree)> parser(
        XML_ParserCreate(nullptr), &XML_ParserFree);
    reader.parser = parser.get();
    XML_SetUserData(parser.get(), &reader);
    XML_SetElementHandler(parser.get(), &startElement, &endElement);
    XML_SetCharacterDataHandler(parser.get(), &characters);

    std::vector<char> buffer(64 * 1024);
    bool ok = true;
    bool last = false;
    while (ok && !last) {
        in.read(buffer.data(), static_cast<std::streamsize>(buffer.size()));
        last = in.gcount() < static_cast<std::streamsize>(buffer.size());
        ok = XML_Parse(parser.get(), buffer.data(), static_cast<int>(in.gcount()), last) == XML_STATUS_OK;
    }
    if (!ok || !reader.haveRoot) {
        out_cause = "line " + toString(static_cast<long>(XML_GetCurrentLineNumber(parser.get()))) + ": " +
                    (reader.error.empty() ? XML_ErrorString(XML_GetErrorCode(parser.get())) : reader.error);
        return false;
    }
    out = reader.root;
    return true;
}

bool Config::fromXML(std::istream& in)
{
    std::string ignored;
    return readXml(in, *this, ignored);
}

std::string writeXml(const Config& conf)
{
    std::string out = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";
    write(conf, 0, out);
    return out;
}
} // namespace osgEarth
