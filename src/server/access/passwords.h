#pragma once

#include <string>
#include <string_view>

namespace vantry::server {

/// How slow a hash is to compute. `Quick` is for tests and measurements only.
enum class HashCost { Interactive, Quick };

/// The text to store for a password: salted, slow to try out, and containing its own parameters.
[[nodiscard]] std::string hashPassword(std::string_view password, HashCost cost = HashCost::Interactive);

[[nodiscard]] bool matchesPassword(std::string_view hash, std::string_view password);

/// Does the work of a check that must fail, so that an unknown operator takes as long as a wrong password.
void wasteCheck(std::string_view password, HashCost cost = HashCost::Interactive);

/// Whether the name and the password are short enough to be those of an operator. Longer ones are refused
/// before anything is stored of them.
[[nodiscard]] bool mayBeLogin(std::string_view name, std::string_view password);

/// What a new password lacks, as one sentence; empty for an acceptable one.
[[nodiscard]] std::string weaknessOf(std::string_view password);

/// A new session token: 256 random bits as text.
[[nodiscard]] std::string makeToken();

/// What is stored of a token, so that a copy of the database opens no session.
[[nodiscard]] std::string hashToken(std::string_view token);

}  // namespace vantry::server
