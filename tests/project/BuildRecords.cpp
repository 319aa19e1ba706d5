#include "BuildRecords.h"

#include "support/Process.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>

namespace fs = std::filesystem;

namespace {

/// A path from the build's records, relative to the project's root if it is inside.
std::string projectPath(const fs::path& path)
{
    const fs::path whole = (fs::path(KORVID_BUILD_FOLDER) / path).lexically_normal();
    const fs::path inside = whole.lexically_relative(KORVID_SOURCE_FOLDER);
    return inside.empty() || *inside.begin() == ".." ? whole.string() : inside.string();
}

} // namespace

std::map<std::string, std::vector<std::string>> dependenciesOfObjects()
{
    const auto result = runProcess({"ninja", "-C", KORVID_BUILD_FOLDER, "-t", "deps"});
    if (result.exitCode != 0)
        throw std::runtime_error("ninja cannot list the dependencies of the objects: " + result.error);

    std::map<std::string, std::vector<std::string>> dependencies;
    std::vector<std::string>* current = nullptr;
    std::istringstream lines(result.output);
    for (std::string line; std::getline(lines, line);) {
        if (line.starts_with("    "))
            current->push_back(projectPath(line.substr(4)));
        else if (const auto colon = line.find(": #deps"); colon != std::string::npos)
            current = &dependencies[line.substr(0, colon)];
    }
    return dependencies;
}

std::map<std::string, std::string> compileCommands()
{
    QFile file(KORVID_BUILD_FOLDER "/compile_commands.json");
    if (!file.open(QIODevice::ReadOnly))
        throw std::runtime_error("the build left no compile_commands.json");
    std::map<std::string, std::string> commands;
    const auto entries = QJsonDocument::fromJson(file.readAll()).array();
    for (const auto& entry : entries) {
        const auto object = entry.toObject();
        commands[projectPath(object["file"].toString().toStdString())] =
            object["command"].toString().toStdString();
    }
    return commands;
}

std::vector<std::string> filesBelow(const std::string& folder, const std::string& ending)
{
    std::vector<std::string> files;
    for (const auto& entry : fs::recursive_directory_iterator(fs::path(KORVID_SOURCE_FOLDER) / folder)) {
        if (entry.is_regular_file() && entry.path().string().ends_with(ending))
            files.push_back(entry.path().lexically_relative(KORVID_SOURCE_FOLDER).string());
    }
    std::sort(files.begin(), files.end());
    return files;
}

std::vector<std::string> publicHeaders()
{
    std::vector<std::string> headers = filesBelow("include", ".h");
    for (const auto& header : filesBelow("platform", ".h")) {
        if (header.find("/include/") != std::string::npos)
            headers.push_back(header);
    }
    return headers;
}

std::string includedName(const std::string& header)
{
    return header.substr(("/" + header).find("/include/") + std::string("include/").size());
}

std::string codeBlock(const std::string& markdown, const std::string& language)
{
    const std::string fence = "\n```" + language + "\n";
    const auto begin = markdown.find(fence);
    if (begin == std::string::npos)
        return {};
    const auto end = markdown.find("\n```\n", begin + fence.size());
    return markdown.substr(begin + fence.size(), end + 1 - begin - fence.size());
}

std::string readProjectFile(const std::string& name)
{
    std::ifstream file(fs::path(KORVID_SOURCE_FOLDER) / name, std::ios::binary);
    if (!file)
        throw std::runtime_error("cannot read " + name);
    std::ostringstream content;
    content << file.rdbuf();
    return content.str();
}
