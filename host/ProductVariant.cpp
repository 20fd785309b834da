#include "host/ProductVariant.h"

namespace qd {

namespace {
ProductVariant theVariant = ProductVariant::Standard;
}

void SetProductVariant(ProductVariant variant) {
  theVariant = variant;
}
ProductVariant GetProductVariant() {
  return theVariant;
}
int IsKSL() {
  return theVariant == ProductVariant::KSL ? 1 : 0;
}
int IsRVT() {
  return theVariant == ProductVariant::RVT ? 1 : 0;
}
int IsZDH() {
  return theVariant == ProductVariant::ZDH ? 1 : 0;
}

}  // namespace qd
