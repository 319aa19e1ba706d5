#pragma once

#include <string>
#include <string_view>
#include <vector>

/// The project's pages for its users: Markdown files.

/// A fenced code block.
struct CodeBlock {
    std::string document; ///< the file's name from the project's root
    int line = 0;         ///< of the first line of code, from 1
    std::string language; ///< "cpp", "cmake", "sh"; empty where none is given
    std::string code;
};

/// All Markdown files: those in the root and those in docs/.
std::vector<std::string> documents();

/// The code blocks of a file, in order.
std::vector<CodeBlock> codeBlocks(const std::string& document);

/// The text of a file without its code: fenced blocks and indented ones are empty lines, so that lines keep
/// their numbers. Code within a line stays.
std::string prose(const std::string& document);

/// What the first group of a regular expression matches, in order.
std::vector<std::string> matches(std::string_view text, const std::string& expression);

/// The part of a page that a heading's anchor leads to, as web sites of Git repositories make it: lower case,
/// spaces as "-", punctuation left out.
std::string anchorOf(std::string_view heading);
