// JPG by libjpeg. Its errors come by longjmp, so nothing that must be destroyed lives where it
// jumps.
#include <array>
#include <csetjmp>
#include <cstddef>
#include <cstdio>
#include <cstring>
#include <memory>
#include <new>
#include <stdexcept>
#include <utility>

#include <jpeglib.h>

#include "host/draw_module/image_writer.h"

namespace vornwout {
namespace {

/// Charts are lines and letters, around which lower ones leave clouds.
constexpr int kQuality = 92;

struct JpegJob {
  jpeg_compress_struct encoder{};
  jpeg_error_mgr errors{};
  jpeg_destination_mgr destination{};
  std::jmp_buf place{};
  char problem[JMSG_LENGTH_MAX] = {};
  std::array<JOCTET, 65536> buffer{};
  std::string bytes;
};

JpegJob& jobOf(void* data) { return *static_cast<JpegJob*>(data); }

void onError(j_common_ptr encoder) {
  JpegJob& job = jobOf(encoder->client_data);
  encoder->err->format_message(encoder, job.problem);
  std::longjmp(job.place, 1);
}

void onMessage(j_common_ptr) {}

void startBuffer(j_compress_ptr encoder) {
  JpegJob& job = jobOf(encoder->client_data);
  job.destination.next_output_byte = job.buffer.data();
  job.destination.free_in_buffer = job.buffer.size();
}

/// False when memory ran out: nothing may be thrown through the encoder.
bool keep(JpegJob& job, std::size_t count) {
  try {
    job.bytes.append(reinterpret_cast<const char*>(job.buffer.data()), count);
  } catch (const std::bad_alloc&) {
    return false;
  }
  return true;
}

void keepOrJump(JpegJob& job, std::size_t count) {
  if (keep(job, count)) return;
  std::strcpy(job.problem, "it takes too much memory");
  std::longjmp(job.place, 1);
}

boolean onFullBuffer(j_compress_ptr encoder) {
  keepOrJump(jobOf(encoder->client_data), jobOf(encoder->client_data).buffer.size());
  startBuffer(encoder);
  return TRUE;
}

void onEnd(j_compress_ptr encoder) {
  JpegJob& job = jobOf(encoder->client_data);
  keepOrJump(job, job.buffer.size() - job.destination.free_in_buffer);
}

/// False when it failed; `job.problem` says why.
bool encode(JpegJob& job, const PixelRows& pixels, bool isGray) {
  job.encoder.err = jpeg_std_error(&job.errors);
  job.errors.error_exit = onError;
  job.errors.output_message = onMessage;
  job.encoder.client_data = &job;
  if (setjmp(job.place) != 0) {
    jpeg_destroy_compress(&job.encoder);
    return false;
  }
  jpeg_create_compress(&job.encoder);
  job.destination.init_destination = startBuffer;
  job.destination.empty_output_buffer = onFullBuffer;
  job.destination.term_destination = onEnd;
  job.encoder.dest = &job.destination;
  job.encoder.image_width = static_cast<JDIMENSION>(pixels.width());
  job.encoder.image_height = static_cast<JDIMENSION>(pixels.height());
  job.encoder.input_components = 4;
  job.encoder.in_color_space =
      __BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__ ? JCS_EXT_BGRX : JCS_EXT_XRGB;
  jpeg_set_defaults(&job.encoder);
  jpeg_set_quality(&job.encoder, kQuality, TRUE);
  if (isGray) {
    jpeg_set_colorspace(&job.encoder, JCS_GRAYSCALE);
  } else {
    // Thin coloured lines keep their colours.
    job.encoder.comp_info[0].h_samp_factor = 1;
    job.encoder.comp_info[0].v_samp_factor = 1;
  }
  jpeg_start_compress(&job.encoder, TRUE);
  while (job.encoder.next_scanline < job.encoder.image_height) {
    JSAMPROW row = static_cast<JSAMPROW>(
        static_cast<void*>(pixels.row(static_cast<int>(job.encoder.next_scanline))));
    jpeg_write_scanlines(&job.encoder, &row, 1);
  }
  jpeg_finish_compress(&job.encoder);
  jpeg_destroy_compress(&job.encoder);
  return true;
}

}  // namespace

std::string jpgFile(const PixelRows& pixels, bool isGray) {
  const auto job = std::make_unique<JpegJob>();
  if (!encode(*job, pixels, isGray)) throw std::runtime_error(job->problem);
  return std::move(job->bytes);
}

}  // namespace vornwout
