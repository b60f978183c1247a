// SPDX-License-Identifier: MIT
#pragma once

#include <QUrl>

/// A "mailto" link to the product team with a subject and the questions that a report should
/// answer.
QUrl feedbackMail();
