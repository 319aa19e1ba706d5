#pragma once

#include "CoreGraphics/pdf/PDFBudget.h"
#include "CoreGraphics/pdf/Qpdf.h"

#include <cstddef>
#include <string>
#include <utility>

/// Counts what a filter writes, and throws PDFLimitExceeded when it is too much: some filters make gigabytes
/// of a few bytes.
class CountingPipeline : public Pipeline {
public:
    explicit CountingPipeline(std::size_t most)
        : Pipeline("limited", nullptr)
        , _most(most)
    {
    }
    void write(const unsigned char*, std::size_t length) override
    {
        if (length > _most - _count)
            throw PDFLimitExceeded{"decoded bytes"};
        _count += length;
    }
    void finish() override { }

    std::size_t count() const { return _count; }

private:
    std::size_t _most;
    std::size_t _count = 0;
};

/// Also collects it.
class CollectingPipeline final : public CountingPipeline {
public:
    using CountingPipeline::CountingPipeline;

    void write(const unsigned char* data, std::size_t length) override
    {
        CountingPipeline::write(data, length);
        _bytes.append(reinterpret_cast<const char*>(data), length);
    }

    std::string takeBytes() { return std::move(_bytes); }

private:
    std::string _bytes;
};
