#pragma once

// Names and addresses of the product, in one place.

namespace product {

inline constexpr char name[] = "Sorvane";
inline constexpr char version[] = "3.0.8";
inline constexpr char organisation[] = "Sorvane";
inline constexpr char homePage[] = "https://www.sorvane.example";
inline constexpr char supportMail[] = "support@sorvane.example";

} // namespace product
