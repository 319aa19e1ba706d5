#pragma once

/// From now on the messages of Qt go to our log, without those that only remark on the environment.
///
/// A program that has installed a handler of its own goes on getting them all.
void sendQtMessagesToLog();
