#pragma once

/// Sends the messages of Qt to NSLog, except those that only describe the environment. A program's own
/// message handler stays installed and receives all of them.
void sendQtMessagesToLog();
