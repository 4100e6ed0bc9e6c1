/** @file
 * Linkage of the public interface; included by the subsystem headers, of no use by itself. */
#ifndef QUORVEL_API_H
#define QUORVEL_API_H

#define QUORVEL_API __attribute__((visibility("default")))

#ifdef __cplusplus
#define QUORVEL_BEGIN_DECLS extern "C" {
#define QUORVEL_END_DECLS }
#else
#define QUORVEL_BEGIN_DECLS
#define QUORVEL_END_DECLS
#endif

#endif
