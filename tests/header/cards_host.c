/* A host in C of vantrel_cards.h: finds a card, cuts it, and gives everything back. */
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "vantrel_cards.h"

#define CHECK(condition)                                     \
  do {                                                       \
    if (!(condition)) {                                      \
      printf("line %d: not so: %s\n", __LINE__, #condition); \
      return 1;                                              \
    }                                                        \
  } while (0)

int main(void) {
  enum { kWidth = 400, kHeight = 300 };
  unsigned char* pixels = malloc(3 * kWidth * kHeight);
  CHECK(pixels != NULL);
  for (int y = 0; y < kHeight; ++y) {
    for (int x = 0; x < kWidth; ++x) {
      const int card = x >= 30 && x < 370 && y >= 20 && y < 280;
      memset(pixels + 3 * (y * kWidth + x), card ? 200 : 30, 3);
    }
  }
  const vantrel_image scan = {pixels, kWidth, kHeight, 3 * kWidth, VANTREL_FORMAT_RGB, 150.0};
  CHECK(vantrel_image_check(&scan) == VANTREL_OK);
  CHECK(vantrel_version_number() == VANTREL_VERSION_NUMBER);

  const vantrel_method methods[] = {VANTREL_METHOD_DARK_GLASS};
  vantrel_find_options options = VANTREL_FIND_OPTIONS_INIT;
  options.methods = methods;
  options.method_count = 1;
  vantrel_cards* cards = NULL;
  CHECK(vantrel_find(&scan, &options, &cards) == VANTREL_OK);
  CHECK(vantrel_cards_count(cards) == 1);
  vantrel_card card = VANTREL_CARD_INIT;
  CHECK(vantrel_cards_get(cards, 0, &card) == VANTREL_OK);
  CHECK(vantrel_cards_get(cards, 1, &card) == VANTREL_ERROR_ABSENT);
  CHECK(strcmp(vantrel_method_name(card.method), "dark-glass") == 0);

  vantrel_picture picture = VANTREL_PICTURE_INIT;
  CHECK(vantrel_cut(&scan, &card.corners, VANTREL_MARGIN_TIGHT, &picture) == VANTREL_OK);
  CHECK(picture.width == 341 && picture.height == 261 && picture.format == VANTREL_FORMAT_RGB);
  const unsigned char* middle = (const unsigned char*)picture.data + 130 * picture.stride + 3 * 170;
  CHECK(middle[0] == 200 && middle[1] == 200 && middle[2] == 200);
  vantrel_picture_release(&picture);
  CHECK(picture.data == NULL);
  vantrel_cards_release(cards);
  free(pixels);
  return 0;
}
