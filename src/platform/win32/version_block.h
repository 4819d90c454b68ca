// The version resource of a file.
#pragma once

#include <windows.h>

#include <string>

namespace pc {

class VersionBlock {
public:
    // Without a version resource the answers below are empty.
    explicit VersionBlock(const std::string& path);
    // Lives as long as the block; null when there is none.
    const VS_FIXEDFILEINFO* Numbers() const;
    // Such as "ProductName", in the resource's first language.
    std::string Text(const std::string& name) const;

private:
    std::string bytes;
};

}  // namespace pc
