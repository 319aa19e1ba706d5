#pragma once

#include "../RecordingView.h"
#include "QtTestSupport.h"

#include <gtest/gtest.h>

/// A visible window of 100 x 100 points with a content view "root" and its subview "view", which log their
/// events.
class RecordedWindow : public testing::Test {
protected:
    Log log;
    RetainPtr<RecordingView> root = make<RecordingView>(NSZeroRect, "root", log);
    RetainPtr<RecordingView> view = make<RecordingView>(NSMakeRect(20, 10, 50, 30), "view", log);
    RetainPtr<NSWindow> window;
    QWidget* widget = nullptr;

    void SetUp() override
    {
        root->addSubview(view);
        window = shownWindow(NSMakeRect(50, 50, 100, 100), root);
        widget = widgetOf(*window);
        log.clear();
    }
};
