#pragma once

// What the signs in these headers say. Each header names its group at the top. One that names both
// has a sign on every class and free function; aliases and constants go with the sign above them,
// members with their class unless they carry a sign of their own.

/// \defgroup contract The hosts' contract
///
/// Names, spellings, texts, orders, files and results that hosts rely on, to the letter and to the
/// bit, odd ones included. docs/contract.md tells each oddity's place and why it stays.

/// \defgroup own The library's own
///
/// The newer surface beside the contract: jobs, reports, readers with reasons, simulators and what
/// presents results. It grows and its messages may be improved. So are the last parameters of a
/// contract call that have default values, and a result where the contract gives none.
