#include "CoreGraphics/pdf/FreeTypeLibrary.h"

#include <cstdlib>
#include <cstring>

namespace {

/// What all faces of a document may use besides their files. Large Chinese fonts take less than a tenth.
constexpr std::size_t kMostBytes = 32 << 20;

/// What lies before each block: its size, padded so that the block keeps malloc's alignment.
union BlockHeader {
    std::size_t size;
    std::max_align_t alignment;
};

std::size_t& byteCountOf(FT_Memory memory)
{
    return *static_cast<std::size_t*>(memory->user);
}

BlockHeader* headerOf(void* block)
{
    return static_cast<BlockHeader*>(block) - 1;
}

/// FreeType reports a null result as "out of memory", and gives the face up.
void* resize(FT_Memory memory, BlockHeader* old, std::size_t oldSize, std::size_t size)
{
    std::size_t& byteCount = byteCountOf(memory);
    if (size > kMostBytes || byteCount - oldSize > kMostBytes - size)
        return nullptr;
    auto* header = static_cast<BlockHeader*>(std::realloc(old, sizeof(BlockHeader) + size));
    if (!header)
        return nullptr;
    header->size = size;
    byteCount = byteCount - oldSize + size;
    return header + 1;
}

void* allocate(FT_Memory memory, long size)
{
    return resize(memory, nullptr, 0, std::size_t(size));
}

void* reallocate(FT_Memory memory, long, long size, void* block)
{
    BlockHeader* header = headerOf(block);
    return resize(memory, header, header->size, std::size_t(size));
}

void release(FT_Memory memory, void* block)
{
    BlockHeader* header = headerOf(block);
    byteCountOf(memory) -= header->size;
    std::free(header);
}

} // namespace

FreeTypeLibrary::FreeTypeLibrary()
    : _memory{&_byteCount, allocate, release, reallocate}
{
    if (FT_New_Library(&_memory, &_handle) == 0)
        FT_Add_Default_Modules(_handle);
}

FreeTypeLibrary::~FreeTypeLibrary()
{
    if (_handle)
        FT_Done_Library(_handle);
}
