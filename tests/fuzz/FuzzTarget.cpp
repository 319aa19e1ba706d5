#include "FuzzTarget.h"

#include <fstream>
#include <stdexcept>

namespace {

/// The value of a quoted string's inside.
std::string unescaped(const std::string& text)
{
    std::string word;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '\\' && text.at(++i) == 'x') {
            word += static_cast<char>(std::stoi(text.substr(i + 1, 2), nullptr, 16));
            i += 2;
        } else {
            word += text[i];
        }
    }
    return word;
}

void runOn(const FuzzTarget& target, const std::string& input)
{
    target.run(reinterpret_cast<const std::uint8_t*>(input.data()), input.size());
}

} // namespace

std::vector<std::string> dictionaryWords(const std::string& name)
{
    std::ifstream file(KORVID_FUZZ_FOLDER "/" + name);
    std::vector<std::string> words;
    for (std::string line; std::getline(file, line);) {
        if (line.starts_with('"'))
            words.push_back(unescaped(line.substr(1, line.rfind('"') - 1)));
    }
    if (words.empty())
        throw std::runtime_error("there is no dictionary " + name);
    return words;
}

std::string damaged(std::string input, const std::vector<std::string>& words, std::mt19937& random)
{
    for (auto changes = 1 + random() % 8; changes > 0; --changes) {
        if (input.empty())
            input.push_back(' ');
        const auto at = random() % input.size();
        switch (random() % 4) {
        case 0:
            input[at] = static_cast<char>(random());
            break;
        case 1:
            input.insert(at, words[random() % words.size()]);
            break;
        case 2:
            input.erase(at, 1 + random() % 20);
            break;
        default:
            input.insert(at, input.substr(random() % input.size(), random() % 60));
        }
    }
    return input;
}

void runDamagedSeeds(
    const FuzzTarget& target, const std::vector<std::string>& words, unsigned randomSeed, int runs)
{
    const auto seeds = target.seeds();
    for (const auto& seed : seeds)
        runOn(target, seed);
    std::mt19937 random(randomSeed);
    for (int run = 0; run < runs; ++run)
        runOn(target, damaged(seeds[random() % seeds.size()], words, random));
}
