#pragma once

#include <Foundation/NSObject.h>

/// An object that counts how often it is destroyed.
class Probe : public NSObject {
public:
    explicit Probe(int& destroyed)
        : _destroyed(destroyed)
    {
    }

protected:
    ~Probe() override { ++_destroyed; }

private:
    int& _destroyed;
};
