// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

namespace quillmark::test {

/// Has this process and what it starts obey the permissions of files, as users do, although it
/// may be root's. For the start of main(): threads that run already are not affected.
void obeyPermissions();

/// Gives this process mounts of its own, which go with it. For the start of main(), before any
/// other thread. Where the system does not let it, canMount() tells.
void takeOwnMounts();

/// Whether file systems can be mounted for this process alone.
bool canMount();

} // namespace quillmark::test
