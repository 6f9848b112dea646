// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
import Varnel.Ui

FadingScrollBar {}
